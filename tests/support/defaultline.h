#pragma once

/// The switches of the window's line as long as nobody has changed an option, in pieces with a
/// blank before each switch.
namespace defaultline {

constexpr auto base = " -q -dBATCH -dMaxBitmap=300000000 -dNOPAUSE -dSAFER -sDEVICE=pdfwrite"
                      " -dCompatibilityLevel=1.4";
constexpr auto images =
    " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"
    " -dColorImageResolution=150 -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"
    " -dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=150 -dAutoFilterGrayImages=false"
    " -dGrayImageFilter=/DCTEncode -dDownsampleMonoImages=true"
    " -dMonoImageDownsampleType=/Bicubic -dMonoImageResolution=300"
    " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode";
constexpr auto fonts = " -dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=true";
constexpr auto permissions = " -dPermissions=-4";

} // namespace defaultline
