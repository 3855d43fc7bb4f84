#include "texts.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

namespace engine {

namespace {

class TextSearch : public QPDFObjectHandle::ParserCallbacks
{
public:
    void handleObject(QPDFObjectHandle object) override
    {
        static constexpr const char *showing[] = {"Tj", "TJ", "'", "\""};
        if (!object.isOperator() || std::find(std::begin(showing), std::end(showing),
                                              object.getOperatorValue()) == std::end(showing))
            return;
        m_found = true;
        terminateParsing();
    }
    void handleEOF() override {}
    [[nodiscard]] bool hasFound() const { return m_found; }

private:
    bool m_found = false;
};

bool showsText(QPDFPageObjectHelper page)
{
    TextSearch search;
    page.parseContents(&search);
    bool found = search.hasFound();
    page.forEachFormXObject(true,
                            [&](QPDFObjectHandle &form, QPDFObjectHandle &, const std::string &) {
                                if (!found)
                                    QPDFPageObjectHelper(form).parseContents(&search);
                                found = search.hasFound();
                            });
    return found;
}

} // namespace

bool losesText(QPDF &original, QPDF &copy)
{
    const auto pages = QPDFPageDocumentHelper(original).getAllPages();
    const auto copies = QPDFPageDocumentHelper(copy).getAllPages();
    for (std::size_t index = 0; index < std::min(pages.size(), copies.size()); ++index) {
        if (showsText(pages[index]) && !showsText(copies[index]))
            return true;
    }
    return false;
}

} // namespace engine
