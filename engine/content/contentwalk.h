#pragma once

#include "pdf/matrix.h"

#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// Where something is shown.
struct Shown
{
    int page = -1; ///< index from 0; -1: not on a page by a way that was understood

    /// False: only where a reader draws nothing by default, which is in a hidden layer or
    /// annotation, in an appearance that is not the current one, or outside the crop box.
    bool drawn = true;

    /// False: in the cell of a pattern or in a glyph, which stand at places of their own. A matrix
    /// then tells the size only.
    bool placed = true;
};

/// Is told what the contents of a document use. What is told may be told again.
class ContentVisitor
{
public:
    virtual ~ContentVisitor() = default;

    /// An image that is an object of its own; those beside it (/SMask, /Mask, /Alternates) are not
    /// told. The matrix leads from the unit square to the page's points.
    virtual void image(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix);

    /// Codes that are shown, with the font in force; null: unknown.
    virtual void text(const Shown &shown, QPDFObjectHandle font, const std::string &codes);

    /// A name that is used, as "/XObject" "/Im1", with the resources it was found in.
    virtual void resource(QPDFObjectHandle resources, const std::string &category,
                          const std::string &name);

    /// A content that was not read to its end: it is damaged, nested too deep, or there is too much
    /// of it. A stream, or a page.
    virtual void unclear(const Shown &shown, QPDFObjectHandle content);
};

/// Walks through what every page shows: its contents, forms, patterns, Type 3 glyphs, soft mask
/// groups, and all appearances of its annotations and of the form's fields. Page space is in
/// points, the page's unit applied. The work is bounded, whatever the document. Throws a
/// std::exception if the pages can't be found.
void walkContent(QPDF &document, ContentVisitor &visitor);

} // namespace engine
