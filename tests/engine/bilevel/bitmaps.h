#pragma once

#include "engine/bilevel/bitmap.h"

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>
#include <QString>

#include <functional>

using Bitmaps = QList<engine::Bitmap>;

/// Pixel by pixel.
engine::Bitmap drawn(quint32 width, quint32 height,
                     const std::function<bool(quint32 x, quint32 y)> &isBlack);

engine::Bitmap solid(quint32 width, quint32 height, bool black);

/// The share of black pixels in percent.
engine::Bitmap noise(quint32 width, quint32 height, quint32 density, QRandomGenerator &random);

/// Lines of letters: there are few shapes, which come again and again, on white.
engine::Bitmap text(quint32 width, quint32 height, QRandomGenerator &random);

/// A photograph as a press prints it, in dots of so many pixels.
engine::Bitmap halftone(quint32 width, quint32 height, quint32 period);

/// Any of these, of any size up to these.
engine::Bitmap anyBitmap(quint32 width, quint32 height, QRandomGenerator &random);

/// What other programs make of JBIG2 streams: a bitmap for each, of that size; none if one of them
/// can't be decoded. The folder is for the programs' files; it has to exist.
struct Jbig2Stream
{
    std::string data;
    quint32 width = 0;
    quint32 height = 0;
};
using Jbig2Decoder = Bitmaps (*)(const QList<Jbig2Stream> &streams, const QString &folder);
Bitmaps decodedByJbig2dec(const QList<Jbig2Stream> &streams, const QString &folder);
Bitmaps decodedByPoppler(const QList<Jbig2Stream> &streams, const QString &folder);
Bitmaps decodedByGhostscript(const QList<Jbig2Stream> &streams, const QString &folder);

/// Ghostscript's CCITTFaxEncode streams of bitmaps, with these entries in the filter's dictionary
/// beside the size; none if it fails.
QList<QByteArray> encodedByGhostscript(const Bitmaps &bitmaps, const QByteArray &parameters,
                                       const QString &folder);
