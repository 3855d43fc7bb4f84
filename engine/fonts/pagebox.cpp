#include "pagebox.h"

#include <qpdf/QPDFPageObjectHelper.hh>

namespace engine {

PageBoxes::PageBoxes(QPDF &document)
    : m_pages(document.getAllPages())
{
}

Box PageBoxes::of(int page) const
{
    if (page < 0 || std::size_t(page) >= m_pages.size())
        return {};
    QPDFObjectHandle entry = m_pages[std::size_t(page)];
    QPDFObjectHandle box = QPDFPageObjectHelper(entry).getAttribute("/MediaBox", false);
    QPDFObjectHandle unit = entry.getKey("/UserUnit");
    const double given = unit.isNumber() ? unit.getNumericValue() : 1;
    const double points = given > 0 ? given : 1;
    if (!box.isRectangle())
        return {0, 0, 612 * points, 792 * points};
    const auto rectangle = box.getArrayAsRectangle();
    return {rectangle.llx * points, rectangle.lly * points, rectangle.urx * points,
            rectangle.ury * points};
}

} // namespace engine
