#pragma once

#include <QHash>
#include <QLatin1String>
#include <QString>

#include <span>

class QSettings;

namespace core {

/// How a value is written in the settings file; every value is a string there.
enum class Encoding {
    flag,  ///< "Ok" or "No"
    index, ///< decimal text of a combo box's index
    text,  ///< as typed
};

/// One key of the settings file.
struct SettingsKey
{
    QLatin1String name;
    Encoding encoding;
    /// What the engine switches and the folder dialogs take when the key is absent; null: not read.
    QLatin1String engineDefault;
    /// What the options dialog shows when the key is absent; null: not read.
    QLatin1String dialogDefault;
};

/// All keys, in the order in which the options dialog writes them.
std::span<const SettingsKey> settingsKeys();

/// Path of the settings file, an INI file in the temporary-files location of the user.
QString settingsFilePath();

/// Path of the document information mark file, in the same folder.
QString markFilePath();

using Values = QHash<QString, QString>;

/// The stored value, or the engine default, of every key that has an engine default.
Values engineValues(const QSettings &settings);

/// The stored value of one key, or its engine default. Empty for a key that has none.
QString engineValue(const QSettings &settings, QLatin1String key);

} // namespace core
