#include "signature.h"

#include "pdf/walk.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

bool isSigned(QPDF &document)
{
    const auto dictionaries = reachableDictionaries(document);
    return std::any_of(dictionaries.begin(), dictionaries.end(), [](QPDFObjectHandle dictionary) {
        return dictionary.getKey("/ByteRange").isArray();
    });
}

} // namespace engine
