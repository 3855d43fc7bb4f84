#pragma once

#include "pageview.h"

#include <qpdf/QPDF.hh>

namespace engine {

/// Nothing if the object is no rectangle.
std::optional<Box> boxOf(QPDFObjectHandle array);

/// The number of points that one of the page's own units is.
double unitOf(QPDFObjectHandle page);

PageView pageViewOf(QPDFObjectHandle page, int index);

/// Of all pages. Throws a std::exception if the pages can't be found.
std::vector<PageView> pageViewsOf(QPDF &document);

} // namespace engine
