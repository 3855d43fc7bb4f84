#include "pageboxes.h"

#include <algorithm>
#include <qpdf/QPDFPageObjectHelper.hh>

namespace engine {

namespace {

Box cropOf(QPDFPageObjectHelper page, double unit)
{
    const Box media = boxOf(page.getAttribute("/MediaBox", false)).value_or(Box{0, 0, 612, 792});
    const Box crop = boxOf(page.getAttribute("/CropBox", false)).value_or(media);
    const Box visible = {std::max(media.left, crop.left), std::max(media.bottom, crop.bottom),
                         std::min(media.right, crop.right), std::min(media.top, crop.top)};
    const bool isEmpty = visible.left >= visible.right || visible.bottom >= visible.top;
    return boundsOf(isEmpty ? media : visible, {unit, 0, 0, unit, 0, 0});
}

// What is no multiple of 90 turns nothing.
int rotationOf(QPDFPageObjectHelper page)
{
    QPDFObjectHandle rotation = page.getAttribute("/Rotate", false);
    const long long degrees = rotation.isInteger() ? rotation.getIntValue() % 360 : 0;
    return degrees % 90 == 0 ? int((degrees + 360) % 360) : 0;
}

} // namespace

std::optional<Box> boxOf(QPDFObjectHandle array)
{
    if (!array.isRectangle())
        return {};
    const auto box = array.getArrayAsRectangle();
    return Box{box.llx, box.lly, box.urx, box.ury};
}

double unitOf(QPDFObjectHandle page)
{
    QPDFObjectHandle unit = page.getKey("/UserUnit");
    const double value = unit.isNumber() ? unit.getNumericValue() : 1;
    return value > 0 ? value : 1;
}

PageView pageViewOf(QPDFObjectHandle page, int index)
{
    return {index, cropOf(page, unitOf(page)), rotationOf(page)};
}

std::vector<PageView> pageViewsOf(QPDF &document)
{
    std::vector<PageView> views;
    for (const auto &page : document.getAllPages())
        views.push_back(pageViewOf(page, int(views.size())));
    return views;
}

} // namespace engine
