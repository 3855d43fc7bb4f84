#pragma once

#include <string_view>

namespace engine {

/// PostScript that gives the document PDF/A's output intent: the sRGB profile that comes with
/// Ghostscript.
inline constexpr std::string_view outputIntentProgram =
    "[ /_objdef {sRGBProfile} /type /stream /OBJ pdfmark "
    "[ {sRGBProfile} << /N 3 >> /PUT pdfmark "
    "[ {sRGBProfile} currentuserparams /ICCProfilesDir get (srgb.icc) concatstrings (r) file"
    " /PUT pdfmark "
    "[ /_objdef {sRGBIntent} /type /dict /OBJ pdfmark "
    "[ {sRGBIntent} << /Type /OutputIntent /S /GTS_PDFA1 /DestOutputProfile {sRGBProfile}"
    " /OutputConditionIdentifier (sRGB) /Info (sRGB IEC61966-2.1) >> /PUT pdfmark "
    "[ {Catalog} << /OutputIntents [ {sRGBIntent} ] >> /PUT pdfmark";

} // namespace engine
