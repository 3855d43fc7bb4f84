#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace engine {

inline constexpr std::string_view outputSwitch = "-sOutputFile=";
inline constexpr std::string_view userPasswordSwitch = "-sUserPassword=";
inline constexpr std::string_view ownerPasswordSwitch = "-sOwnerPassword=";
inline constexpr std::string_view permissionsSwitch = "-dPermissions=";
inline constexpr std::string_view pdfaSwitch = "-dPDFA";
inline constexpr std::string_view plainFontsSwitch = "-dCompressFonts=false";
inline constexpr std::string_view subsetFontsSwitch = "-dSubsetFonts=true";
inline constexpr std::string_view noStandardFontsSwitch = "-dEmbedAllFonts=false";
inline constexpr std::string_view anyMonoFilterSwitch = "-dAutoFilterMonoImages=true";
inline constexpr std::string_view jbig2Switch = "-dMonoImageFilter=/JBIG2Encode";

/// The name of the switch, its equals sign included, if the window may send this argument, with
/// this value, in front of the output; empty if it never does.
std::string_view windowSwitch(std::string_view argument);

/// Whether the window means this command line: it wants pdfwrite with an output file, or it begins
/// like the window's. Such a line is carried out to the letter or refused, never passed through.
bool isForPdfwrite(const std::vector<std::string> &arguments);

} // namespace engine
