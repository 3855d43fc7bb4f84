#pragma once

#include <functional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

/// Calls the function with each stream that the trailer leads to. One that turns out not to be
/// readable is left at that.
void forEveryStream(QPDF &document, const std::function<void(QPDFObjectHandle)> &work);

} // namespace engine
