#include "losses.h"

#include <algorithm>
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

// What the document opens with is all that Ghostscript draws.
std::size_t hiddenLayers(QPDF &document)
{
    QPDFObjectHandle layers = document.getRoot().getKey("/OCProperties");
    if (!layers.isDictionary() || !layers.getKey("/D").isDictionary())
        return 0;
    QPDFObjectHandle state = layers.getKey("/D");
    const auto count = [](QPDFObjectHandle list) {
        return list.isArray() ? std::size_t(list.getArrayNItems()) : 0;
    };
    if (!state.getKey("/BaseState").isNameAndEquals("/OFF"))
        return count(state.getKey("/OFF"));
    const std::size_t all = count(layers.getKey("/OCGs"));
    return all - std::min(all, count(state.getKey("/ON")));
}

struct Kind
{
    const char *name;
    std::size_t (*count)(QPDF &);
};

constexpr Kind kinds[] = {
    {"form fields", formFields},         {"links", linksOf},
    {"outline entries", outlineEntries}, {"attachments", attachmentsOf},
    {"hidden layers", hiddenLayers},
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
