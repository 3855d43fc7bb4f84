#pragma once

#include <map>
#include <qpdf/QPDF.hh>

namespace engine {

/// How many places refer to an object.
using References = std::map<QPDFObjGen, int>;

/// Of all objects that the trailer leads to.
References referencesIn(QPDF &document);

} // namespace engine
