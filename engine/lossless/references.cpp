#include "references.h"

#include "pdf/walk.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

void countIn(Object holder, References &references);

void count(Object value, References &references)
{
    if (value.isIndirect())
        ++references[value.getObjGen()];
    else
        countIn(value, references);
}

void countIn(Object holder, References &references)
{
    if (holder.isArray()) {
        for (const auto &item : holder.getArrayAsVector())
            count(item, references);
        return;
    }
    Object dictionary = holder.isStream() ? holder.getDict() : holder;
    if (!dictionary.isDictionary())
        return;
    for (const auto &[key, value] : dictionary.getDictAsMap())
        count(value, references);
}

} // namespace

References referencesIn(QPDF &document)
{
    References references;
    countIn(document.getTrailer(), references);
    for (const Object &object : reachableObjects(document))
        countIn(object, references);
    return references;
}

} // namespace engine
