#pragma once

#include "pdf/touched.h"

#include <qpdf/QPDF.hh>
#include <set>
#include <vector>

namespace engine {

struct FontOptions
{
    bool subset = false;
    bool compress = true; ///< false: the programs are written as they are, without a filter

    /// The programs of the standard fourteen fonts are left out, unless the document claims a
    /// standard such as PDF/A, which asks for them.
    bool leaveOutStandard14 = false;
};

struct FontResult
{
    /// Where a program that has become smaller is shown: the pictures stay what they were.
    std::vector<TouchedPart> touched;

    /// Where one that was left out is shown: a reader's own font serves, which looks different.
    std::vector<TouchedPart> leftOut;
};

/// Makes the font programs of the document smaller as the options say. A program keeps all its
/// glyphs where it isn't certain which of them are shown, and where a field may need others; it is
/// left alone where its number is excluded.
FontResult shrinkFonts(QPDF &document, const FontOptions &options, const std::set<int> &excluded);

} // namespace engine
