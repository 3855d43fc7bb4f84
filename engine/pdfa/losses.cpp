#include "losses.h"

#include "outline.h"
#include "pdf/walk.h"

#include <algorithm>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <utility>

namespace engine {

namespace {

std::size_t annotations(QPDF &document, const std::string &subtype)
{
    std::size_t count = 0;
    for (auto &page : QPDFPageDocumentHelper(document).getAllPages())
        count += page.getAnnotations(subtype).size();
    return count;
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

struct Kind
{
    const char *name;
    std::size_t (*count)(QPDF &);
};

constexpr Kind kinds[] = {
    {"links", linksOf},
    {"outline entries", outlineEntries},
};

// Colours that were mixed with their mask stop to fit it once the image is made smaller; conditions
// on layers are passed over, so that what they hide is drawn; a form that its program draws is
// lost.
constexpr std::pair<const char *, const char *> unsupportedFeatures[] = {
    {"/Matte", "colours mixed with a mask"},
    {"/VE", "conditions on layers"},
    {"/NeedsRendering", "a form that only a program can draw"},
};

} // namespace

std::string lossOf(QPDF &copy, QPDF &original)
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
    for (const auto &[key, name] : unsupportedFeatures) {
        if (holdersOf(original, key) > 0)
            return name;
    }
    return {};
}

} // namespace engine
