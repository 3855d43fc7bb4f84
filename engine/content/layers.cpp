#include "layers.h"

#include <algorithm>

namespace engine {

namespace {

// Deeper expressions are nobody's layers.
constexpr int deepest = 30;

std::vector<QPDFObjectHandle> groupsOf(QPDFObjectHandle value)
{
    std::vector<QPDFObjectHandle> groups;
    if (value.isDictionary())
        groups.push_back(value);
    else if (value.isArray())
        groups = value.getArrayAsVector();
    groups.erase(std::remove_if(groups.begin(), groups.end(),
                                [](QPDFObjectHandle group) { return !group.isDictionary(); }),
                 groups.end());
    return groups;
}

} // namespace

Layers::Layers(QPDF &document)
{
    QPDFObjectHandle properties = document.getRoot().getKey("/OCProperties");
    QPDFObjectHandle start =
        properties.isDictionary() ? properties.getKey("/D") : QPDFObjectHandle::newNull();
    if (!start.isDictionary())
        return;
    m_onUnlessListed = !start.getKey("/BaseState").isNameAndEquals("/OFF");
    for (const auto &group : groupsOf(start.getKey(m_onUnlessListed ? "/OFF" : "/ON")))
        m_listed.insert(group.getObjGen());
}

bool Layers::isOn(const QPDFObjectHandle &group) const
{
    return (m_listed.count(group.getObjGen()) > 0) != m_onUnlessListed;
}

bool Layers::shows(QPDFObjectHandle content) const
{
    if (!content.isDictionary())
        return true;
    if (content.getKey("/Type").isNameAndEquals("/OCMD"))
        return showsMembership(content);
    return !content.isIndirect() || isOn(content);
}

bool Layers::showsMembership(QPDFObjectHandle membership) const
{
    if (membership.getKey("/VE").isArray())
        return fulfils(membership.getKey("/VE"), 0);
    const auto groups = groupsOf(membership.getKey("/OCGs"));
    const auto on = [this](const QPDFObjectHandle &group) { return isOn(group); };
    QPDFObjectHandle policy = membership.getKey("/P");
    if (groups.empty())
        return true;
    if (policy.isNameAndEquals("/AllOn"))
        return std::all_of(groups.begin(), groups.end(), on);
    if (policy.isNameAndEquals("/AnyOff"))
        return !std::all_of(groups.begin(), groups.end(), on);
    if (policy.isNameAndEquals("/AllOff"))
        return std::none_of(groups.begin(), groups.end(), on);
    return std::any_of(groups.begin(), groups.end(), on);
}

bool Layers::fulfils(QPDFObjectHandle expression, int depth) const
{
    if (expression.isDictionary())
        return isOn(expression);
    if (!expression.isArray() || expression.getArrayNItems() == 0 || depth > deepest)
        return true;
    const auto items = expression.getArrayAsVector();
    const auto holds = [&](const QPDFObjectHandle &item) { return fulfils(item, depth + 1); };
    QPDFObjectHandle operation = items.front();
    if (operation.isNameAndEquals("/Not"))
        return items.size() < 2 || !holds(items[1]);
    if (operation.isNameAndEquals("/And"))
        return std::all_of(items.begin() + 1, items.end(), holds);
    return std::any_of(items.begin() + 1, items.end(), holds);
}

} // namespace engine
