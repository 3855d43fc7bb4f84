#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// PDF files with something that is easily lost.
namespace documents {

/// One page of 200 by 200 points with a line of text. Resources and page entries are added to the
/// page's, objects are numbered from 6, catalogue entries and trailer entries are added as well.
struct Parts
{
    QByteArray content = {};
    QByteArray resources = {};
    QByteArray page = {};
    QByteArray catalogue = {};
    QByteArray trailer = {};
    QList<QByteArray> objects = {};
};
QByteArray withParts(const Parts &parts);

/// A form with one text field, named "name", that holds "Zoe". More objects are numbered from 8.
QByteArray form(const QList<QByteArray> &moreObjects = {}, const QByteArray &catalogue = {},
                const QByteArray &trailer = {});

/// Two pages: on the first a link to a place on the second, and one with the given action, or
/// others. Much is drawn, so that Ghostscript makes them smaller.
QByteArray links(const QByteArray &box = "/MediaBox [0 0 200 200]",
                 const QByteArray &action = "/S /URI /URI (https://example.org/)",
                 const QByteArray &annotations = "7 0 R 8 0 R", const QByteArray &catalogue = {});

/// A page of text that runs from bottom to top, which Ghostscript turns if nobody keeps it from it.
QByteArray upright();

/// A page with a bilevel image of 800 by 800 pixels, two inches square, in CCITT Group 4.
QByteArray scan();

/// Three glyphs, one of which stands for three letters: "affib".
QByteArray ligature();

/// A document that libqpdf reads without complaint, and Ghostscript not at all.
QByteArray unreadableForGhostscript();

/// The document after qpdf has been at it.
QByteArray rewritten(const QByteArray &document, const QStringList &qpdfOptions);

} // namespace documents
