#pragma once

#include <QByteArray>
#include <QList>
#include <qpdf/QPDF.hh>

/// Documents in memory, for what looks into them.
namespace parsed {

class Document
{
public:
    explicit Document(const QByteArray &bytes);

    operator QPDF &() { return m_pdf; }
    QPDF *operator->() { return &m_pdf; }

private:
    QByteArray m_bytes; // outlives what reads it
    QPDF m_pdf;
};

/// One page with a line of text; objects are numbered from 6, entries are added to the catalogue.
QByteArray with(const QList<QByteArray> &objects, const QByteArray &catalogue = {});

/// A page that shows this, and has no font. Forms are numbered from 5, of which the page knows the
/// first as /X; the catalogue leads to the sixth object as well.
QByteArray showing(const QByteArray &content, const QList<QByteArray> &forms = {});

/// A form, or by its entries another thing that can be drawn.
QByteArray formOf(const QByteArray &content, const QByteArray &entries = "/Subtype /Form");

} // namespace parsed
