#pragma once

#include <QString>

/// What may be given for a key of the settings file by hand. The dialog offers nothing else; values
/// that stand in the file are taken as they are (settings.h).
namespace core {

/// Whether the key is one of those that the engine's switches come from.
bool isEngineKey(const QString &key);

/// Whether an engine key can have that value: "Ok" or "No", the index of an item of its combo box,
/// a resolution in dpi, or a password that reaches the engine whole.
bool isValueOf(const QString &key, const QString &value);

/// The values of an engine key in words, such as "Ok or No" or "0 to 3".
QString valuesText(const QString &key);

} // namespace core
