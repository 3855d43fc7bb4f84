#include "parsed.h"

#include "documents.h"
#include "samples.h"

namespace parsed {

Document::Document(const QByteArray &bytes)
    : m_bytes(bytes)
{
    m_pdf.processMemoryFile("document", m_bytes.constData(), std::size_t(m_bytes.size()));
}

QByteArray with(const QList<QByteArray> &objects, const QByteArray &catalogue)
{
    documents::Parts parts;
    parts.catalogue = catalogue;
    parts.objects = objects;
    return documents::withParts(parts);
}

QByteArray showing(const QByteArray &content, const QList<QByteArray> &forms)
{
    const QList<QByteArray> page = {
        "<< /Type /Catalog /Pages 2 0 R /Six 6 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R"
        " /Resources << /XObject << /X 5 0 R >> >> >>",
        pdfStream({}, content)};
    return pdfOf(page + forms);
}

QByteArray formOf(const QByteArray &content, const QByteArray &entries)
{
    return pdfStream("/Type /XObject " + entries + " /BBox [0 0 9 9]", content);
}

} // namespace parsed
