#include "rules.h"

#include "pdf/streams.h"
#include "pdf/walk.h"

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
    if (is(dictionary, "/S", {"/Named"}))
        return !is(dictionary, "/N", {"/NextPage", "/PrevPage", "/FirstPage", "/LastPage"});
    return is(dictionary, "/S",
              {"/JavaScript", "/Launch", "/Sound", "/Movie", "/ResetForm", "/ImportData",
               "/Rendition", "/SetOCGState", "/GoToE", "/Hide", "/Trans", "/GoTo3DView",
               "/set-state", "/no-op"});
}

bool isAnnotation(Object dictionary)
{
    return dictionary.getKey("/Rect").isArray() && dictionary.getKey("/Subtype").isName() &&
           (!dictionary.hasKey("/Type") || is(dictionary, "/Type", {"/Annot"}));
}

constexpr int invisible = 1;
constexpr int hidden = 2;
constexpr int noZoom = 8;
constexpr int noRotate = 16;
constexpr int noView = 32;

int flagsOf(Object annotation)
{
    Object flags = annotation.getKey("/F");
    return flags.isInteger() ? flags.getIntValueAsInt() : 0;
}

bool isForbiddenAnnotation(Object dictionary)
{
    if (!isAnnotation(dictionary))
        return false;
    const bool known = is(dictionary, "/Subtype",
                          {"/Text", "/Link", "/FreeText", "/Line", "/Square", "/Circle",
                           "/Highlight", "/Underline", "/Squiggly", "/StrikeOut", "/Stamp", "/Ink",
                           "/Popup", "/Widget", "/PrinterMark", "/TrapNet"});
    return !known || (flagsOf(dictionary) & (invisible | hidden | noView)) != 0;
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
    {"an attachment", isAttachment},           {"a forbidden annotation", isForbiddenAnnotation},
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

// What PDF 1.4 sets limits to, and PDF/A-1 keeps.
constexpr double largestReal = 32767;
constexpr std::size_t longestString = 65535;
constexpr int longestArray = 8191;
constexpr int mostColorants = 8;

bool isBeyondLimits(Object object)
{
    if (object.isReal())
        return std::abs(object.getNumericValue()) > largestReal;
    if (object.isString())
        return object.getStringValue().size() > longestString;
    if (!object.isArray())
        return false;
    const bool hasColorants = object.getArrayNItems() > 1 &&
                              object.getArrayItem(0).isNameAndEquals("/DeviceN") &&
                              object.getArrayItem(1).isArray();
    return object.getArrayNItems() > longestArray ||
           (hasColorants && object.getArrayItem(1).getArrayNItems() > mostColorants);
}

std::string brokenRuleOf(Object object);

std::string brokenRuleIn(const std::vector<Object> &parts)
{
    for (const Object &part : parts) {
        // The others are objects of their own.
        std::string rule = Object(part).isIndirect() ? std::string() : brokenRuleOf(part);
        if (!rule.empty())
            return rule;
    }
    return {};
}

std::string brokenRuleOf(Object object)
{
    if (isBeyondLimits(object))
        return "more than PDF 1.4 allows of something";
    if (object.isArray())
        return brokenRuleIn(object.getArrayAsVector());
    Object dictionary = object.isStream() ? object.getDict() : object;
    if (!dictionary.isDictionary())
        return {};
    for (const Rule &rule : rules) {
        if (rule.isBroken(dictionary))
            return rule.objection;
    }
    std::vector<Object> parts;
    for (const auto &[key, value] : dictionary.getDictAsMap())
        parts.push_back(value);
    return brokenRuleIn(parts);
}

class NumberCheck : public Object::ParserCallbacks
{
public:
    void handleObject(Object object) override
    {
        m_tooLarge =
            m_tooLarge || (object.isReal() && std::abs(object.getNumericValue()) > largestReal);
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
    if (object.isStream())
        return is(object.getDict(), "/Subtype", {"/Form"}) && hasTooLargeNumbers(object);
    if (!object.isDictionary())
        return false;
    if (is(object, "/Type", {"/Page"}))
        return hasTooLargeNumbers(object.getKey("/Contents"));
    Object glyphs = object.getKey("/CharProcs");
    if (!glyphs.isDictionary())
        return false;
    const auto programs = glyphs.getDictAsMap();
    return std::any_of(programs.begin(), programs.end(),
                       [](const auto &entry) { return hasTooLargeNumbers(entry.second); });
}

} // namespace

std::string claimObjection(QPDF &document)
{
    const bool claimed = claimsPdfa(document) && hasOutputIntent(document);
    return claimed ? "" : "Ghostscript made no PDF/A of it";
}

std::string brokenPdfaRule(QPDF &document)
{
    for (const Object &object : reachableObjects(document)) {
        std::string rule = brokenRuleOf(object);
        if (rule.empty() && drawsWithTooLargeNumbers(object))
            rule = "numbers that are too large";
        if (!rule.empty())
            return rule;
    }
    return {};
}

bool needsForeignFonts(QPDF &original)
{
    const auto dictionaries = reachableDictionaries(original);
    return std::any_of(dictionaries.begin(), dictionaries.end(), [](Object dictionary) {
        return is(dictionary, "/Subtype", {"/CIDFontType0", "/CIDFontType2"}) &&
               isUnembeddedFont(dictionary);
    });
}

bool leavesFontsToReaders(QPDF &original)
{
    const auto dictionaries = reachableDictionaries(original);
    return std::any_of(dictionaries.begin(), dictionaries.end(), [](Object dictionary) {
        return isUnembeddedFont(dictionary) && dictionary.getKey("/FontDescriptor").isDictionary();
    });
}

void settlePdfa(QPDF &document)
{
    for (Object dictionary : reachableDictionaries(document)) {
        if (is(dictionary, "/Subtype", {"/Type3"}) && dictionary.getKey("/Encoding").isDictionary())
            dictionary.getKey("/Encoding").removeKey("/BaseEncoding");
        if (isAnnotation(dictionary) && is(dictionary, "/Subtype", {"/Text"}))
            dictionary.replaceKey("/F",
                                  Object::newInteger(flagsOf(dictionary) | noZoom | noRotate));
        if (dictionary.hasKey("/Rect") && dictionary.getKey("/AP").isDictionary()) {
            dictionary.getKey("/AP").removeKey("/D");
            dictionary.getKey("/AP").removeKey("/R");
        }
    }
}

} // namespace engine
