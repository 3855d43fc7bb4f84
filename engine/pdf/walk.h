#pragma once

#include <qpdf/QPDF.hh>
#include <vector>

namespace engine {

/// The objects with a number of their own that lead from the trailer to the last page, each once. A
/// document may hold others, which nobody reads and no copy gets.
std::vector<QPDFObjectHandle> reachableObjects(QPDF &document);

/// The dictionaries on the same way, those of streams and those without a number among them.
std::vector<QPDFObjectHandle> reachableDictionaries(QPDF &document);

/// The images, stencil masks among them, and the forms that the pages draw, in the order of the
/// pages, each once.
std::vector<QPDFObjectHandle> drawnObjects(QPDF &document);

} // namespace engine
