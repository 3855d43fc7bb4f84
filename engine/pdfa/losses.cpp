#include "losses.h"

#include "pdf/walk.h"

#include <algorithm>
#include <qpdf/QPDFOutlineDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <utility>

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

std::size_t widgets(QPDF &document)
{
    return annotations(document, "/Widget");
}

// A form may be more than its fields' places on the pages, or have none of them (XFA).
std::size_t formParts(QPDF &document)
{
    QPDFObjectHandle form = document.getRoot().getKey("/AcroForm");
    if (!form.isDictionary())
        return 0;
    QPDFObjectHandle fields = form.getKey("/Fields");
    return std::size_t(form.hasKey("/XFA")) +
           (fields.isArray() ? std::size_t(fields.getArrayNItems()) : 0);
}

// Those without a window of their own, which comes and goes.
std::size_t comments(QPDF &document)
{
    return annotations(document, {}) - annotations(document, "/Popup");
}

std::size_t holdersOf(QPDF &document, const char *key)
{
    const auto dictionaries = reachableDictionaries(document);
    const auto holds = [key](QPDFObjectHandle holder) {
        QPDFObjectHandle value = holder.getKey(key);
        return !value.isNull() && !(value.isBool() && !value.getBoolValue());
    };
    return std::size_t(std::count_if(dictionaries.begin(), dictionaries.end(), holds));
}

std::size_t replies(QPDF &document)
{
    return holdersOf(document, "/IRT");
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
    {"form fields", widgets},
    {"form", formParts},
    {"links", linksOf},
    {"comments", comments},
    {"replies", replies},
    {"outline entries", outlineEntries},
    {"attachments", attachmentsOf},
    {"hidden layers", hiddenLayers},
};

// Colours that were mixed with their mask stop to fit it once the image is made smaller; conditions
// on layers are passed over, so that what they hide is drawn; a form that its program draws is
// lost.
constexpr std::pair<const char *, const char *> strange[] = {
    {"/Matte", "colours mixed with a mask"},
    {"/VE", "conditions on layers"},
    {"/NeedsRendering", "a form that only a program can draw"},
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
    return holdersOf(document, "/EF");
}

std::string unsupportedFeature(QPDF &original)
{
    for (const auto &[key, name] : strange) {
        if (holdersOf(original, key) > 0)
            return name;
    }
    return {};
}

} // namespace engine
