#include "pdfa.h"

#include "streams.h"

#include <algorithm>
#include <cmath>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

bool is(Object object, const char *key, std::initializer_list<const char *> names)
{
    Object value = object.getKey(key);
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return value.isNameAndEquals(name); });
}

bool isOpaque(Object number)
{
    return !number.isNumber() || number.getNumericValue() >= 1.0;
}

bool isTransparent(Object dictionary)
{
    Object mask = dictionary.getKey("/SMask");
    const bool masked = mask.isStream() || mask.isDictionary();
    const bool blended =
        dictionary.getKey("/BM").isName() && !is(dictionary, "/BM", {"/Normal", "/Compatible"});
    return masked || blended || !isOpaque(dictionary.getKey("/ca")) ||
           !isOpaque(dictionary.getKey("/CA")) ||
           (dictionary.getKey("/Group").isDictionary() &&
            is(dictionary.getKey("/Group"), "/S", {"/Transparency"}));
}

// Composite fonts leave it to their descendants, and Type 3 fonts are their own program.
bool isUnembeddedFont(Object dictionary)
{
    if (!is(dictionary, "/Type", {"/Font"}) || is(dictionary, "/Subtype", {"/Type0", "/Type3"}))
        return false;
    Object descriptor = dictionary.getKey("/FontDescriptor");
    return !descriptor.isDictionary() || !(descriptor.getKey("/FontFile").isStream() ||
                                           descriptor.getKey("/FontFile2").isStream() ||
                                           descriptor.getKey("/FontFile3").isStream());
}

bool isForbiddenAction(Object dictionary)
{
    return is(dictionary, "/S",
              {"/JavaScript", "/Launch", "/Sound", "/Movie", "/ResetForm", "/ImportData"}) &&
           !dictionary.hasKey("/Subtype");
}

bool isInterpolated(Object dictionary)
{
    Object flag = dictionary.getKey("/Interpolate");
    return flag.isBool() && flag.getBoolValue();
}

bool isAttachment(Object dictionary)
{
    return dictionary.hasKey("/EmbeddedFiles") || dictionary.hasKey("/EF");
}

struct Rule
{
    const char *objection;
    bool (*isBroken)(Object dictionary);
};

constexpr Rule rules[] = {
    {"transparency", isTransparent},           {"a font that is not embedded", isUnembeddedFont},
    {"a forbidden action", isForbiddenAction}, {"an interpolated image", isInterpolated},
    {"an attachment", isAttachment},
};

bool claimsPdfa(QPDF &document)
{
    Object metadata = document.getRoot().getKey("/Metadata");
    return metadata.isStream() && rawBytesOf(metadata).find("pdfaid:part") != std::string::npos;
}

bool hasOutputIntent(QPDF &document)
{
    Object intents = document.getRoot().getKey("/OutputIntents");
    return intents.isArray() && intents.getArrayNItems() > 0;
}

// Through what lies directly in the object; the rest is an object of its own.
std::string brokenRuleOf(Object object)
{
    if (object.isArray()) {
        for (const auto &item : object.getArrayAsVector()) {
            if (std::string rule = item.isIndirect() ? "" : brokenRuleOf(item); !rule.empty())
                return rule;
        }
    }
    Object dictionary = object.isStream() ? object.getDict() : object;
    if (!dictionary.isDictionary())
        return {};
    for (const Rule &rule : rules) {
        if (rule.isBroken(dictionary))
            return rule.objection;
    }
    for (auto [key, value] : dictionary.getDictAsMap()) {
        if (std::string rule = value.isIndirect() ? "" : brokenRuleOf(value); !rule.empty())
            return rule;
    }
    return {};
}

// PDF 1.4 knows no larger numbers.
class NumberCheck : public Object::ParserCallbacks
{
public:
    void handleObject(Object object) override
    {
        m_tooLarge = m_tooLarge || (object.isReal() && std::abs(object.getNumericValue()) > 32767);
    }
    void handleEOF() override {}
    [[nodiscard]] bool hasTooLarge() const { return m_tooLarge; }

private:
    bool m_tooLarge = false;
};

bool hasTooLargeNumbers(Object content)
{
    NumberCheck check;
    Object::parseContentStream(content, &check);
    return check.hasTooLarge();
}

bool drawsWithTooLargeNumbers(Object object)
{
    if (is(object.isStream() ? object.getDict() : object, "/Type", {"/Page"}))
        return hasTooLargeNumbers(object.getKey("/Contents"));
    if (object.isStream())
        return is(object.getDict(), "/Subtype", {"/Form"}) && hasTooLargeNumbers(object);
    Object glyphs = object.isDictionary() ? object.getKey("/CharProcs") : Object::newNull();
    if (!glyphs.isDictionary())
        return false;
    const auto programs = glyphs.getDictAsMap();
    return std::any_of(programs.begin(), programs.end(),
                       [](const auto &entry) { return hasTooLargeNumbers(entry.second); });
}

} // namespace

std::string pdfaObjection(QPDF &document)
{
    if (!claimsPdfa(document) || !hasOutputIntent(document))
        return "Ghostscript made no PDF/A of it";
    for (const Object &object : document.getAllObjects()) {
        std::string rule = brokenRuleOf(object);
        if (rule.empty() && drawsWithTooLargeNumbers(object))
            rule = "numbers that are too large";
        if (!rule.empty())
            return "it can't become PDF/A-1b: it would have " + rule;
    }
    return {};
}

bool needsForeignFonts(QPDF &original)
{
    const auto objects = original.getAllObjects();
    return std::any_of(objects.begin(), objects.end(), [](Object object) {
        return object.isDictionary() &&
               is(object, "/Subtype", {"/CIDFontType0", "/CIDFontType2"}) &&
               isUnembeddedFont(object);
    });
}

void settlePdfa(QPDF &document)
{
    for (Object object : document.getAllObjects()) {
        if (object.isDictionary() && is(object, "/Subtype", {"/Type3"}) &&
            object.getKey("/Encoding").isDictionary())
            object.getKey("/Encoding").removeKey("/BaseEncoding");
    }
}

} // namespace engine
