#include "switches.h"

#include <algorithm>
#include <span>

namespace engine {

namespace {

constexpr std::string_view deviceSwitch = "-sDEVICE=pdfwrite";

constexpr std::string_view fixedWords[] = {
    "-q",         "-dBATCH",  "-dMaxBitmap=300000000",    "-dNOPAUSE", "-dSAFER",
    deviceSwitch, pdfaSwitch, "-dCompatibilityLevel=1.4",
};
// A line that begins so comes from the window, even if what follows was damaged.
constexpr auto windowBeginning = std::span(fixedWords).first(3);

constexpr std::string_view flags[] = {"true", "false"};
constexpr std::string_view never[] = {"false"};
constexpr std::string_view types[] = {"/Subsample", "/Average", "/Bicubic"};
constexpr std::string_view filters[] = {"/DCTEncode", "/FlateEncode"};
constexpr std::string_view monoFilters[] = {"/FlateEncode", "/RunLengthEncode", "/JBIG2Encode",
                                            "/CCITTFaxEncode"};
// Texts that a user typed reach the engine as they are.
constexpr std::span<const std::string_view> anyText;

struct ValueSwitch
{
    std::string_view name;
    std::span<const std::string_view> values;
};

constexpr ValueSwitch valueSwitches[] = {
    {"-dDownsampleColorImages=", flags},   {"-dColorImageDownsampleType=", types},
    {"-dColorImageResolution=", anyText},  {"-dAutoFilterColorImages=", flags},
    {"-dColorImageFilter=", filters},      {"-dDownsampleGrayImages=", never},
    {"-dGrayImageDownsampleType=", types}, {"-dGrayImageResolution=", anyText},
    {"-dAutoFilterGrayImages=", flags},    {"-dGrayImageFilter=", filters},
    {"-dDownsampleMonoImages=", flags},    {"-dMonoImageDownsampleType=", types},
    {"-dMonoImageResolution=", anyText},   {"-dAutoFilterMonoImages=", flags},
    {"-dMonoImageFilter=", monoFilters},   {"-dEmbedAllFonts=", flags},
    {"-dCompressFonts=", flags},           {"-dSubsetFonts=", flags},
    {userPasswordSwitch, anyText},         {ownerPasswordSwitch, anyText},
};

template <typename Range>
bool contains(const Range &range, std::string_view value)
{
    return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

// -4 to -64 in steps of 4: the sums of the four boxes.
bool isPermissions(std::string_view argument)
{
    for (int denied = 4; denied <= 64; denied += 4) {
        if (argument == std::string(permissionsSwitch) + "-" + std::to_string(denied))
            return true;
    }
    return false;
}

} // namespace

std::string_view windowSwitch(std::string_view argument)
{
    if (contains(fixedWords, argument))
        return argument;
    if (isPermissions(argument))
        return permissionsSwitch;
    for (const ValueSwitch &known : valueSwitches) {
        if (!argument.starts_with(known.name))
            continue;
        const bool allowed =
            known.values.empty() || contains(known.values, argument.substr(known.name.size()));
        return allowed ? known.name : std::string_view();
    }
    return {};
}

bool isForPdfwrite(const std::vector<std::string> &arguments)
{
    const bool beginsLikeWindow =
        arguments.size() >= windowBeginning.size() &&
        std::equal(windowBeginning.begin(), windowBeginning.end(), arguments.begin());
    const bool hasOutput =
        std::any_of(arguments.begin(), arguments.end(),
                    [](const std::string &word) { return word.starts_with(outputSwitch); });
    return beginsLikeWindow || (hasOutput && contains(arguments, deviceSwitch));
}

} // namespace engine
