#include "mark.h"

#include "formats/marktexts.h"
#include "pdf/description.h"
#include "pdf/streams.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

constexpr const char *keys[] = {"/Title",    "/Author",  "/Subject",
                                "/Keywords", "/Creator", "/Producer"};

bool isBlank(const std::string &text)
{
    return text.find_first_not_of(' ') == std::string::npos;
}

Object informationOf(QPDF &document)
{
    Object trailer = document.getTrailer();
    if (!trailer.getKey("/Info").isDictionary())
        trailer.replaceKey("/Info", document.makeIndirectObject(Object::newDictionary()));
    return trailer.getKey("/Info");
}

bool changeEntry(Object information, const std::string &key, const std::string &text)
{
    Object before = information.getKey(key);
    if (text.empty()) {
        information.removeKey(key);
        return !before.isNull();
    }
    information.replaceKey(key, Object::newUnicodeString(text));
    return !before.isString() || before.getUTF8Value() != text;
}

bool changeInformation(QPDF &document, const DescriptionChanges &changes)
{
    const bool exists = document.getTrailer().getKey("/Info").isDictionary();
    if (!exists && !writesText(changes))
        return false;
    Object information = informationOf(document);
    bool changed = false;
    for (const auto &[key, text] : changes)
        changed = changeEntry(information, key, text) || changed;
    return changed;
}

// Compared as it is written without changes, which may be otherwise than the editor wrote it.
bool changePacket(QPDF &document, const DescriptionChanges &changes)
{
    Object metadata = document.getRoot().getKey("/Metadata");
    const auto packet = metadata.isStream() ? decodedBytesOf(metadata) : std::nullopt;
    const auto unchanged = packet ? changedXmp(*packet, {}) : std::nullopt;
    const auto changed = packet ? changedXmp(*packet, changes) : std::nullopt;
    if (!changed || *changed == *unchanged)
        return false;
    metadata.replaceStreamData(*changed, Object::newNull(), Object::newNull());
    return true;
}

} // namespace

DescriptionChanges changesOfMark(const std::string &mark)
{
    const auto texts = markTexts(mark);
    DescriptionChanges changes;
    for (const char *key : keys) {
        const auto text = texts.find(key);
        if (text == texts.end() || text->second.empty())
            continue;
        changes[key] = isBlank(text->second) ? std::string() : readableText(text->second);
    }
    return changes;
}

bool writesText(const DescriptionChanges &changes)
{
    return std::any_of(changes.begin(), changes.end(),
                       [](const auto &change) { return !change.second.empty(); });
}

bool applyChanges(QPDF &document, const DescriptionChanges &changes)
{
    if (changes.empty())
        return false;
    const bool information = changeInformation(document, changes);
    return changePacket(document, changes) || information;
}

} // namespace engine
