#include "foreign.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

QPDFObjectHandle broughtInto(QPDF &document, QPDFObjectHandle object)
{
    if (object.isIndirect())
        return document.copyForeignObject(object);
    if (object.isArray()) {
        QPDFObjectHandle array = QPDFObjectHandle::newArray();
        for (const auto &item : object.getArrayAsVector())
            array.appendItem(broughtInto(document, item));
        return array;
    }
    if (object.isDictionary()) {
        QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
        for (const auto &[key, value] : object.getDictAsMap())
            dictionary.replaceKey(key, broughtInto(document, value));
        return dictionary;
    }
    return object.shallowCopy();
}

} // namespace engine
