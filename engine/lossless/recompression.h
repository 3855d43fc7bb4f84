#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Deflates every stream anew whose bytes become fewer by that. What a stream stands for, and any
/// predictor, stays; images that are compressed in their own way are left alone. Font programs that
/// are not compressed stay so unless fonts is true. False if a stream is damaged; it stays as it
/// is.
bool recompress(QPDF &document, bool fonts);

} // namespace engine
