#pragma once

#include "pdf/matrix.h"

#include <qpdf/QPDF.hh>
#include <vector>

namespace engine {

/// The whole pages of a document, in points, unrotated.
class PageBoxes
{
public:
    explicit PageBoxes(QPDF &document);

    /// Of the page with that index from 0, letter size if it says none; empty if there is no such
    /// page.
    [[nodiscard]] Box of(int page) const;

private:
    std::vector<QPDFObjectHandle> m_pages;
};

} // namespace engine
