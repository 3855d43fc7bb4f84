#include "settingsvalue.h"

#include "settings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace core {

namespace {

constexpr uint highestResolution = 9999; // dpi

// The highest index of each combo box.
struct LastIndex
{
    QLatin1String key;
    int index;
};

constexpr LastIndex lastIndexes[] = {
    {"Image/ColorType"_L1, 3}, {"Image/ColorEnc"_L1, 2}, {"Image/GrayType"_L1, 3},
    {"Image/GrayEnc"_L1, 2},   {"Image/MonoType"_L1, 3}, {"Image/MonoEnc"_L1, 4},
};

const SettingsKey *find(const QString &key)
{
    const auto keys = settingsKeys();
    const auto found = std::ranges::find(keys, key, &SettingsKey::name);
    return found == keys.end() ? nullptr : &*found;
}

int lastIndexOf(const QString &key)
{
    return std::ranges::find(lastIndexes, key, &LastIndex::key)->index;
}

bool isResolution(const QString &key)
{
    return key.endsWith("Res"_L1);
}

// A blank of any kind or a double quote ends the word on the way to the engine, which then refuses
// the rest.
bool isOneWord(const QString &value)
{
    return std::ranges::none_of(value, [](QChar c) { return c.isSpace() || c == u'"'; });
}

bool isNumber(const QString &value, uint least, uint most)
{
    bool ok = false;
    const uint number = value.toUInt(&ok);
    return ok && number >= least && number <= most && value == QString::number(number);
}

} // namespace

bool isEngineKey(const QString &key)
{
    const SettingsKey *found = find(key);
    return found && !found->engineDefault.isNull() && !key.startsWith("dir/"_L1);
}

bool isValueOf(const QString &key, const QString &value)
{
    switch (find(key)->encoding) {
    case Encoding::flag:
        return value == "Ok"_L1 || value == "No"_L1;
    case Encoding::index:
        return isNumber(value, 0, static_cast<uint>(lastIndexOf(key)));
    case Encoding::text:
        break;
    }
    return isResolution(key) ? isNumber(value, 1, highestResolution) : isOneWord(value);
}

QString valuesText(const QString &key)
{
    switch (find(key)->encoding) {
    case Encoding::flag:
        return u"Ok or No"_s;
    case Encoding::index:
        return u"0 to %1"_s.arg(lastIndexOf(key));
    case Encoding::text:
        break;
    }
    return isResolution(key) ? u"1 to %1 dpi"_s.arg(highestResolution)
                             : u"text without blanks and double quotes"_s;
}

} // namespace core
