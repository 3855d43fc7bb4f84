#include "contentscope.h"

namespace engine {

ContentScope::ContentScope(const QPDFObjectHandle &resources, QPDFObjGen owner, ContentScope *outer)
    : m_resources(resources)
    , m_owner(owner)
    , m_outer(outer)
{
}

ContentScope::Found &ContentScope::find(const std::string &category, const std::string &name,
                                        bool &isFirst)
{
    auto &names = m_found[category];
    auto known = names.find(name);
    isFirst = known == names.end();
    if (isFirst)
        known = names.emplace(name, lookUp(category, name)).first;
    return known->second;
}

ContentScope::Found ContentScope::lookUp(const std::string &category, const std::string &name)
{
    QPDFObjectHandle names =
        m_resources.isDictionary() ? m_resources.getKey(category) : QPDFObjectHandle::newNull();
    if (names.isDictionary() && names.hasKey(name))
        return {m_resources, names.getKey(name)};
    return m_outer ? m_outer->lookUp(category, name)
                   : Found{QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull()};
}

} // namespace engine
