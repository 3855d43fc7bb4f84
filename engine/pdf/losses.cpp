#include "losses.h"

#include <qpdf/QPDFEmbeddedFileDocumentHelper.hh>
#include <qpdf/QPDFOutlineDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

namespace engine {

namespace {

std::size_t entriesBelow(const std::vector<QPDFOutlineObjectHelper> &outlines)
{
    std::size_t count = outlines.size();
    for (auto outline : outlines)
        count += entriesBelow(outline.getKids());
    return count;
}

std::size_t outlineEntries(QPDF &document)
{
    return entriesBelow(QPDFOutlineDocumentHelper(document).getTopLevelOutlines());
}

std::size_t annotations(QPDF &document, const std::string &subtype)
{
    std::size_t count = 0;
    for (auto &page : QPDFPageDocumentHelper(document).getAllPages())
        count += page.getAnnotations(subtype).size();
    return count;
}

// A field that lies on no page can't be filled in.
std::size_t formFields(QPDF &document)
{
    return annotations(document, "/Widget");
}

struct Kind
{
    const char *name;
    std::size_t (*count)(QPDF &);
};

constexpr Kind kinds[] = {
    {"form fields", formFields},
    {"links", linksOf},
    {"outline entries", outlineEntries},
    {"attachments", attachmentsOf},
};

} // namespace

std::string lossOf(QPDF &original, QPDF &copy)
{
    for (const Kind &kind : kinds) {
        if (kind.count(copy) < kind.count(original))
            return kind.name;
    }
    return {};
}

std::size_t linksOf(QPDF &document)
{
    return annotations(document, "/Link");
}

std::size_t attachmentsOf(QPDF &document)
{
    return QPDFEmbeddedFileDocumentHelper(document).getEmbeddedFiles().size();
}

} // namespace engine
