#include "leftovers.h"

#include "pdf/walk.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

bool isOfType(Object dictionary, std::initializer_list<const char *> names)
{
    Object type = dictionary.getKey("/Type");
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return type.isNameAndEquals(name); });
}

// Keys that look the same are names of somebody's own in a dictionary of destinations, glyphs or
// resources: what they lead to tells them apart.
bool isPrivateData(Object data)
{
    if (!data.isDictionary() || data.hasKey("/Type"))
        return false;
    const auto editors = data.getDictAsMap();
    return std::all_of(editors.begin(), editors.end(), [](const auto &entry) {
        Object editor = entry.second;
        return editor.isDictionary() &&
               (editor.hasKey("/LastModified") || editor.hasKey("/Private"));
    });
}

bool isMetadata(Object data)
{
    return data.isStream() && isOfType(data.getDict(), {"/Metadata"});
}

// What is attached is its owner's, with all that belongs to it; parts of a document that has parts
// are kept apart by theirs.
bool keepsMetadata(Object owner)
{
    return isOfType(owner, {"/Catalog", "/EmbeddedFile", "/Filespec", "/DPart", "/DPartRoot"});
}

void clean(Object dictionary)
{
    if (isPrivateData(dictionary.getKey("/PieceInfo")))
        dictionary.removeKey("/PieceInfo");
    if (isOfType(dictionary, {"/Page"}) && dictionary.getKey("/Thumb").isStream())
        dictionary.removeKey("/Thumb");
    if (!keepsMetadata(dictionary) && isMetadata(dictionary.getKey("/Metadata")))
        dictionary.removeKey("/Metadata");
}

} // namespace

void dropLeftovers(QPDF &document, const LosslessOptions &)
{
    const Object catalogue = document.getRoot();
    for (Object dictionary : reachableDictionaries(document)) {
        if (!dictionary.isSameObjectAs(catalogue))
            clean(dictionary);
        else if (isPrivateData(dictionary.getKey("/PieceInfo")))
            dictionary.removeKey("/PieceInfo");
    }
}

} // namespace engine
