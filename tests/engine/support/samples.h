#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A PDF file of so many pages, each with its number as text and a gray image of noise; its size is
/// about a kibibyte a page and the images' bytes.
QByteArray samplePdf(int pages = 1, int imageEdge = 8);

/// A stream object with these entries and bytes.
QByteArray pdfStream(const QByteArray &entries, const QByteArray &data);

/// A PDF file whose objects are the given ones, numbered from 1; the first is the catalogue.
QByteArray pdfOf(const QList<QByteArray> &objects);
