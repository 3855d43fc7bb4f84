#include "input.h"

#include "engine/content/contentwalk.h"

#include <qpdf/QPDF.hh>

namespace {

// The input is the content of a page, and of a form that is found under every kind of name, in
// itself as well.
void fill(QPDF &document, const std::string &content)
{
    document.emptyPDF();
    auto form = document.makeIndirectObject(QPDFObjectHandle::newStream(&document, content));
    const std::string own = form.unparse();
    const auto resources = document.makeIndirectObject(QPDFObjectHandle::parse(
        &document, "<< /XObject << /F " + own + " >> /Pattern << /P " + own + " >> /Font << /T <<" +
                       " /Type /Font /Subtype /Type3 /FontMatrix [1 0 0 1 0 0] /CharProcs << /a " +
                       own + " >> /Encoding << /Differences [97 /a] >> >> >> /ExtGState << /G <<" +
                       " /SMask << /S /Alpha /G " + own + " >> >> >> >>"));
    form.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    form.getDict().replaceKey("/PatternType", QPDFObjectHandle::newInteger(1));
    form.getDict().replaceKey("/BBox", QPDFObjectHandle::parse("[0 0 99 99]"));
    form.getDict().replaceKey("/Resources", resources);
    auto page = document.makeIndirectObject(
        QPDFObjectHandle::parse("<< /Type /Page /MediaBox [0 0 99 99] >>"));
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", QPDFObjectHandle::newStream(&document, content));
    document.addPage(page, false);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QPDF document;
    document.setSuppressWarnings(true);
    fill(document, textOf(data, size));
    engine::ContentVisitor nobody;
    engine::walkContent(document, nobody);
    return 0;
}
