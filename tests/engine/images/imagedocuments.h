#pragma once

#include "coding.h"
#include "parsed.h"

#include "engine/bilevel/bitmap.h"

#include <QByteArray>
#include <QList>

/// Documents of one page with an image, which is object 5.
namespace imagedocuments {

constexpr int usualEdge = 400; ///< 288 dpi on the page, 208 pixels at 150

/// The page has a coloured ground, so that masks are seen; other objects follow the image.
QByteArray page(const QList<QByteArray> &objects, const QByteArray &content = {});

QByteArray imageOf(const QByteArray &entries, const QByteArray &bytes, int pixels = usualEdge);
QByteArray flateImage(const QByteArray &space, int components, int bits = 8,
                      const QByteArray &entries = {});
QByteArray jpegImage(const QByteArray &space, int components, coding::Colours colours,
                     const QByteArray &entries = {});

/// A picture of one bit: what is black is a round shape with stripes.
engine::Bitmap bitmap(int pixels);

constexpr int bilevelEdge = 1000; ///< 720 dpi on the page, 500 at 300 dpi
QByteArray bilevelImage(const QByteArray &entries);

/// Colour spaces.
extern const QByteArray palette;
extern const QByteArray separation;

/// An entry of the image's dictionary.
QPDFObjectHandle entryOf(parsed::Document &document, const char *key);

} // namespace imagedocuments
