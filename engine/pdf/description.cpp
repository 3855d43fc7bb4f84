#include "description.h"

#include "xmp/xmp.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

struct Entry
{
    const char *key;
    std::string Description::*text;
};

constexpr Entry texts[] = {
    {"/Title", &Description::title},          {"/Author", &Description::author},
    {"/Subject", &Description::subject},      {"/Keywords", &Description::keywords},
    {"/Creator", &Description::creator},      {"/Producer", &Description::producer},
    {"/CreationDate", &Description::created}, {"/ModDate", &Description::modified},
};

QPDFObjectHandle informationOf(QPDF &document)
{
    QPDFObjectHandle information = document.getTrailer().getKey("/Info");
    return information.isDictionary() ? information : QPDFObjectHandle::newDictionary();
}

// Ghostscript writes Z00'00', which some readers can't make out; +00'00' is the same to all.
std::string withPlainZone(std::string date)
{
    const auto zone = date.find('Z');
    return zone == std::string::npos ? date : date.substr(0, zone) + "+00'00'";
}

bool isDate(const char *key)
{
    return std::string(key).find("Date") != std::string::npos;
}

Description settledTexts(QPDFObjectHandle information)
{
    Description description;
    for (const Entry &entry : texts) {
        QPDFObjectHandle value = information.getKey(entry.key);
        if (!value.isString())
            continue;
        std::string text = readableText(value.getStringValue());
        if (text.empty()) {
            information.removeKey(entry.key); // XMP has no empty texts
            continue;
        }
        if (isDate(entry.key))
            text = withPlainZone(text);
        information.replaceKey(entry.key, isDate(entry.key)
                                              ? QPDFObjectHandle::newString(text)
                                              : QPDFObjectHandle::newUnicodeString(text));
        description.*entry.text = text;
    }
    return description;
}

void setPacket(QPDF &document, const std::string &packet)
{
    QPDFObjectHandle metadata = QPDFObjectHandle::newStream(&document, packet);
    metadata.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/Metadata"));
    metadata.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/XML"));
    document.getRoot().replaceKey("/Metadata", document.makeIndirectObject(metadata));
}

bool isKnown(const std::string &key)
{
    return key == "/Trapped" || std::any_of(std::begin(texts), std::end(texts),
                                            [&](const Entry &entry) { return key == entry.key; });
}

} // namespace

std::string readableText(const std::string &bytes)
{
    const std::string asUtf8 = "\xEF\xBB\xBF";
    const std::string marked = isUtf8BeyondAscii(bytes) ? asUtf8 + bytes : bytes;
    return writableInXml(QPDFObjectHandle::newString(marked).getUTF8Value());
}

void restoreOwnEntries(QPDF &copy, QPDF &original)
{
    QPDFObjectHandle information = informationOf(copy);
    for (auto [key, value] : informationOf(original).getDictAsMap()) {
        if (value.isString() && !isKnown(key) && !information.hasKey(key))
            information.replaceKey(key, QPDFObjectHandle::newString(value.getStringValue()));
    }
}

void markProducer(QPDF &copy, const std::map<std::string, std::string> &marked)
{
    const auto producer = marked.find("/Producer");
    if (producer != marked.end())
        informationOf(copy).replaceKey("/Producer", QPDFObjectHandle::newString(producer->second));
}

void settleDescription(QPDF &document, bool pdfa)
{
    const Description description = settledTexts(informationOf(document));
    setPacket(document, xmpPacket(description, pdfa));
}

void restoreTexts(QPDF &copy, const std::map<std::string, std::string> &marked, QPDF *original)
{
    QPDFObjectHandle information = informationOf(copy);
    for (const Entry &entry : texts) {
        if (isDate(entry.key) || information.hasKey(entry.key))
            continue;
        const auto mark = marked.find(entry.key);
        QPDFObjectHandle own =
            original ? informationOf(*original).getKey(entry.key) : QPDFObjectHandle::newNull();
        if (mark != marked.end())
            information.replaceKey(entry.key, QPDFObjectHandle::newString(mark->second));
        else if (own.isString())
            information.replaceKey(entry.key, QPDFObjectHandle::newString(own.getStringValue()));
    }
}

void takeDescription(QPDF &document, QPDF &copy)
{
    QPDFObjectHandle information = QPDFObjectHandle::newDictionary();
    // What isn't a text may be anything, the page tree for one.
    for (auto [key, value] : informationOf(document).getDictAsMap()) {
        if (value.isString())
            information.replaceKey(key, QPDFObjectHandle::newString(value.getStringValue()));
    }
    for (auto [key, value] : informationOf(copy).getDictAsMap())
        information.replaceKey(key, value.isIndirect() ? document.copyForeignObject(value)
                                                       : value.shallowCopy());
    document.getTrailer().replaceKey("/Info", document.makeIndirectObject(information));
    if (document.getRoot().hasKey("/Metadata"))
        settleDescription(document, false);
    else
        settledTexts(informationOf(document));
}

} // namespace engine
