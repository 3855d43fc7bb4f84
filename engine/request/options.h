#pragma once

namespace engine {

/// What the command line asks of the copy, beyond what Ghostscript does for it.
struct CopyOptions
{
    bool pdfa = false;

    /// For PDF/A only: bilevel images may become JBIG2. Elsewhere the options of the images decide.
    bool smallestBilevel = false;

    bool compressedFonts = true;

    /// Font programs keep the glyphs only that are shown.
    bool subsetFonts = false;

    /// The programs of the standard fourteen fonts are left out.
    bool leaveOutStandard14 = false;
};

} // namespace engine
