#pragma once

#include <QByteArray>
#include <QString>

/// The pictures of a document's pages, as programs draw them.
namespace pictures {

struct Picture
{
    int width = 0;
    int height = 0;
    QByteArray samples; ///< three bytes a pixel
};

enum class Reader { Poppler, Mutool };

/// All pages, at 72 dpi; empty, with a warning, if the reader fails.
QList<Picture> drawn(Reader reader, const QByteArray &document);

/// The largest difference between the means of squares of 8 pixels in any channel, of 255; 256 if
/// the pages are not as many, or not as large.
double difference(const QList<Picture> &some, const QList<Picture> &others);

/// Whether all is of one colour.
bool isPlain(const Picture &picture);

} // namespace pictures
