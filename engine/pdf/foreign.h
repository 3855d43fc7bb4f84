#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// An object of another document for use in this one, with all that it refers to. The other one has
/// to live until this one is written.
QPDFObjectHandle broughtInto(QPDF &document, QPDFObjectHandle object);

} // namespace engine
