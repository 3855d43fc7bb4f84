#pragma once

#include <QByteArray>

/// The pictures of documents' pages, as two readers draw them.
namespace pictures {

/// The largest difference between the means of squares of 8 pixels in any channel, of 255, of what
/// poppler or mutool draws at 72 dpi; 256 if the pages are not as many, or not as large, or if the
/// original shows nothing.
double difference(const QByteArray &document, const QByteArray &original);

} // namespace pictures
