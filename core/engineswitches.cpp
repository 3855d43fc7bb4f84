#include "engineswitches.h"

#include <array>

using namespace Qt::StringLiterals;

namespace core {

namespace {

// A row of a table that turns a stored index into switches. The row with the null value is the
// last one and takes every other value.
struct Choice
{
    QLatin1String value;
    QLatin1String switches;
};
constexpr QLatin1String anyOther;

struct ImageKind
{
    QLatin1String typeKey;
    std::array<Choice, 4> downsample;
    QLatin1String resolutionKey;
    QLatin1String resolutionTestKey;
    QLatin1String resolutionSwitch;
    QLatin1String resolutionFallback;
    QLatin1String filterKey;
    std::array<Choice, 5> filter;
};

constexpr ImageKind colour = {
    .typeKey = "Image/ColorType"_L1,
    .downsample = {{
        {"0"_L1, " -dDownsampleColorImages=false"_L1},
        {"1"_L1, " -dDownsampleColorImages=true -dColorImageDownsampleType=/Subsample"_L1},
        {"2"_L1, " -dDownsampleColorImages=true -dColorImageDownsampleType=/Average"_L1},
        {anyOther, " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"_L1},
    }},
    .resolutionKey = "Image/ColorRes"_L1,
    .resolutionTestKey = "Image/ColorRes"_L1,
    .resolutionSwitch = " -dColorImageResolution="_L1,
    .resolutionFallback = "150"_L1,
    .filterKey = "Image/ColorEnc"_L1,
    .filter = {{
        {"0"_L1, " -dAutoFilterColorImages=true"_L1},
        {"2"_L1, " -dAutoFilterColorImages=false -dColorImageFilter=/FlateEncode"_L1},
        {anyOther, " -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"_L1},
    }},
};

// Gray never says -dDownsampleGrayImages=true: whether gray images are downsampled at all is left
// to the engine, which does so unless this says false.
constexpr ImageKind gray = {
    .typeKey = "Image/GrayType"_L1,
    .downsample = {{
        {"0"_L1, " -dDownsampleGrayImages=false"_L1},
        {"1"_L1, " -dGrayImageDownsampleType=/Subsample"_L1},
        {"2"_L1, " -dGrayImageDownsampleType=/Average"_L1},
        {anyOther, " -dGrayImageDownsampleType=/Bicubic"_L1},
    }},
    .resolutionKey = "Image/GrayRes"_L1,
    .resolutionTestKey = "Image/GrayRes"_L1,
    .resolutionSwitch = " -dGrayImageResolution="_L1,
    .resolutionFallback = "150"_L1,
    .filterKey = "Image/GrayEnc"_L1,
    .filter = {{
        {"0"_L1, " -dAutoFilterGrayImages=true"_L1},
        {"2"_L1, " -dAutoFilterGrayImages=false -dGrayImageFilter=/FlateEncode"_L1},
        {anyOther, " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode"_L1},
    }},
};

// Whether the mono fallback applies is decided by the colour resolution; the documented switches
// for an empty field depend on it.
constexpr ImageKind mono = {
    .typeKey = "Image/MonoType"_L1,
    .downsample = {{
        {"0"_L1, " -dDownsampleMonoImages=false"_L1},
        {"1"_L1, " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Subsample"_L1},
        {"2"_L1, " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Average"_L1},
        {anyOther, " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Bicubic"_L1},
    }},
    .resolutionKey = "Image/MonoRes"_L1,
    .resolutionTestKey = "Image/ColorRes"_L1,
    .resolutionSwitch = " -dMonoImageResolution="_L1,
    .resolutionFallback = "300"_L1,
    .filterKey = "Image/MonoEnc"_L1,
    .filter = {{
        {"0"_L1, " -dAutoFilterMonoImages=true"_L1},
        {"1"_L1, " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode"_L1},
        {"2"_L1, " -dAutoFilterMonoImages=false -dMonoImageFilter=/RunLengthEncode"_L1},
        {"3"_L1, " -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode"_L1},
        {anyOther, " -dAutoFilterMonoImages=false -dMonoImageFilter=/CCITTFaxEncode"_L1},
    }},
};

struct FontSwitch
{
    QLatin1String key;
    QLatin1String name;
};

constexpr FontSwitch fontPieces[] = {
    {"Fonts/Embed"_L1, " -dEmbedAllFonts="_L1},
    {"Fonts/Com"_L1, " -dCompressFonts="_L1},
    {"Fonts/Sub"_L1, " -dSubsetFonts="_L1},
};

struct Permission
{
    QLatin1String key;
    int denied;
};

// The bits of the PDF encryption dictionary's P entry; bits 1 and 2 are always 0, hence the base.
constexpr int permissionsBase = 4;
constexpr Permission permissions[] = {
    {"Secur/AllowPri"_L1, 4},
    {"Secur/AllowMod"_L1, 8},
    {"Secur/AllowCop"_L1, 16},
    {"Secur/AllowAdd"_L1, 32},
};

// A flag is off only if it says exactly so.
bool isOff(const Values &values, QLatin1String key)
{
    return values.value(key) == "No"_L1;
}

bool isBlank(QString value)
{
    return value.remove(u' ').isEmpty();
}

template <std::size_t rows>
QLatin1String choose(const std::array<Choice, rows> &table, const QString &value)
{
    for (const Choice &choice : table) {
        if (choice.value.isNull() || value == choice.value)
            return choice.switches;
    }
    Q_UNREACHABLE();
}

QString resolutionSwitch(const ImageKind &kind, const Values &values)
{
    const bool fallBack = isBlank(values.value(kind.resolutionTestKey));
    return kind.resolutionSwitch +
           (fallBack ? QString(kind.resolutionFallback) : values.value(kind.resolutionKey));
}

QString imageKindSwitches(const ImageKind &kind, const Values &values)
{
    return choose(kind.downsample, values.value(kind.typeKey)) + resolutionSwitch(kind, values) +
           choose(kind.filter, values.value(kind.filterKey));
}

QString passwordSwitch(QLatin1String name, const QString &password)
{
    return isBlank(password) ? QString() : name + password;
}

QString permissionsSwitch(const Values &values)
{
    int count = permissionsBase;
    for (const Permission &permission : permissions) {
        if (isOff(values, permission.key))
            count += permission.denied;
    }
    return " -dPermissions=-"_L1 + QString::number(count);
}

} // namespace

QString engineSwitches(const Values &values)
{
    return baseSwitches() + imageSwitches(values) + fontSwitches(values) +
           securitySwitches(values) + pdfaSwitches(values);
}

QString baseSwitches()
{
    return u" -q -dBATCH -dMaxBitmap=300000000 -dNOPAUSE -dSAFER -sDEVICE=pdfwrite"
           " -dCompatibilityLevel=1.4"_s;
}

QString imageSwitches(const Values &values)
{
    if (isOff(values, "Image/Image"_L1))
        return {};
    return imageKindSwitches(colour, values) + imageKindSwitches(gray, values) +
           imageKindSwitches(mono, values);
}

QString fontSwitches(const Values &values)
{
    if (isOff(values, "Fonts/Fonts"_L1))
        return {};
    QString switches;
    for (const FontSwitch &piece : fontPieces)
        switches += piece.name + (isOff(values, piece.key) ? "false"_L1 : "true"_L1);
    return switches;
}

QString securitySwitches(const Values &values)
{
    if (isOff(values, "Secur/Secur"_L1))
        return {};
    return passwordSwitch(" -sUserPassword="_L1, values.value(u"Secur/UsrPwd"_s)) +
           passwordSwitch(" -sOwnerPassword="_L1, values.value(u"Secur/OwrPwd"_s)) +
           permissionsSwitch(values);
}

QString pdfaSwitches(const Values &values)
{
    // The one flag that is on only if it says exactly so.
    const bool on = values.value(u"Annot/PDFA"_s) == "Ok"_L1;
    return on && !isOff(values, "Annot/Annot"_L1) ? u" -dPDFA"_s : QString();
}

} // namespace core
