#include "destinations.h"

#include "pdf/foreign.h"

#include <qpdf/QPDFNameTreeObjectHelper.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

using Object = QPDFObjectHandle;

Destinations::Destinations(QPDF &copy, QPDF &original)
    : m_copy(copy)
    , m_original(original)
    , m_copyPages(copy.getAllPages())
{
    for (const auto &page : original.getAllPages())
        m_numbers.emplace(page.getObjGen(), m_numbers.size());
}

Object Destinations::arrayOf(Object destination)
{
    if (destination.isString() || destination.isName())
        destination = named(destination);
    return destination.isDictionary() ? destination.getKey("/D") : destination;
}

std::optional<std::size_t> Destinations::pageOf(Object array)
{
    if (!array.isArray() || array.getArrayNItems() == 0)
        return std::nullopt;
    const auto number = m_numbers.find(array.getArrayItem(0).getObjGen());
    return number == m_numbers.end() ? std::nullopt : std::optional(number->second);
}

Object Destinations::inCopy(Object destination)
{
    destination = arrayOf(destination);
    const auto page = pageOf(destination);
    if (!page || *page >= m_copyPages.size())
        return Object::newNull();
    Object result = Object::newArray();
    for (const auto &item : destination.getArrayAsVector())
        result.appendItem(result.getArrayNItems() == 0 ? m_copyPages[*page]
                                                       : broughtInto(m_copy, item));
    return result;
}

Object Destinations::named(Object name)
{
    Object root = m_original.getRoot();
    if (name.isName())
        return root.getKey("/Dests").isDictionary() ? root.getKey("/Dests").getKey(name.getName())
                                                    : Object::newNull();
    Object names = root.getKey("/Names");
    Object found = Object::newNull();
    if (names.isDictionary() && names.getKey("/Dests").isDictionary())
        QPDFNameTreeObjectHelper(names.getKey("/Dests"), m_original, false)
            .findObject(name.getUTF8Value(), found);
    return found;
}

} // namespace engine
