#include "settings.h"

#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace core {

namespace {

constexpr QLatin1String notRead;

// The defaults of Image/MonoEnc differ: until the first Apply the dialog offers CCITT Group 4 while
// the engine gets Flate. Both are promised.
// clang-format off
constexpr SettingsKey keys[] = {
    // name               encoding         engine    dialog
    {"Image/Image"_L1,     Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Image/ColorType"_L1, Encoding::index, "3"_L1,   "3"_L1},
    {"Image/ColorRes"_L1,  Encoding::text,  "150"_L1, "150"_L1},
    {"Image/ColorEnc"_L1,  Encoding::index, "1"_L1,   "1"_L1},
    {"Image/GrayType"_L1,  Encoding::index, "3"_L1,   "3"_L1},
    {"Image/GrayRes"_L1,   Encoding::text,  "150"_L1, "150"_L1},
    {"Image/GrayEnc"_L1,   Encoding::index, "1"_L1,   "1"_L1},
    {"Image/MonoType"_L1,  Encoding::index, "3"_L1,   "3"_L1},
    {"Image/MonoRes"_L1,   Encoding::text,  "300"_L1, "300"_L1},
    {"Image/MonoEnc"_L1,   Encoding::index, "1"_L1,   "4"_L1},
    {"Fonts/Fonts"_L1,     Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Fonts/Embed"_L1,     Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Fonts/Com"_L1,       Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Fonts/Sub"_L1,       Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Secur/Secur"_L1,     Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Secur/UsrPwd"_L1,    Encoding::text,  ""_L1,    ""_L1},
    {"Secur/OwrPwd"_L1,    Encoding::text,  ""_L1,    ""_L1},
    {"Secur/AllowPri"_L1,  Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Secur/AllowMod"_L1,  Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Secur/AllowCop"_L1,  Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Secur/AllowAdd"_L1,  Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Annot/Annot"_L1,     Encoding::flag,  "Ok"_L1,  "Ok"_L1},
    {"Annot/PDFA"_L1,      Encoding::flag,  "No"_L1,  "No"_L1},
    {"Annot/Aut"_L1,       Encoding::text,  notRead,  ""_L1},
    {"Annot/Tit"_L1,       Encoding::text,  notRead,  ""_L1},
    {"Annot/Sub"_L1,       Encoding::text,  notRead,  ""_L1},
    {"Annot/Key"_L1,       Encoding::text,  notRead,  ""_L1},
    {"Annot/Cre"_L1,       Encoding::text,  notRead,  ""_L1},
    {"Annot/Pro"_L1,       Encoding::text,  notRead,  ""_L1},
    {"dir/input"_L1,       Encoding::text,  "."_L1,   notRead},
    {"dir/output"_L1,      Encoding::text,  "."_L1,   notRead},
};
// clang-format on

// Plain concatenation: the file names carry the slash.
QString inTemporaryFolder(QLatin1String slashAndName)
{
    return QStandardPaths::writableLocation(QStandardPaths::TempLocation) + slashAndName;
}

QString storedOr(const QSettings &settings, QLatin1String key, QLatin1String fallback)
{
    return settings.value(key, QString(fallback)).toString();
}

} // namespace

std::span<const SettingsKey> settingsKeys()
{
    return keys;
}

QString settingsFilePath()
{
    return inTemporaryFolder("/corvane.ini"_L1);
}

QString markFilePath()
{
    return inTemporaryFolder("/pdfinfo.txt"_L1);
}

Values engineValues(const QSettings &settings)
{
    Values values;
    for (const SettingsKey &key : keys) {
        if (!key.engineDefault.isNull())
            values.insert(key.name, storedOr(settings, key.name, key.engineDefault));
    }
    return values;
}

QString engineValue(const QSettings &settings, QLatin1String key)
{
    const auto *const found = std::ranges::find(keys, key, &SettingsKey::name);
    return found == std::end(keys) ? QString() : storedOr(settings, key, found->engineDefault);
}

} // namespace core
