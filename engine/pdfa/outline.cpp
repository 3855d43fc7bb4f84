#include "outline.h"

#include "destinations.h"
#include "pdf/foreign.h"

#include <qpdf/QPDFObjectHandle.hh>
#include <set>
#include <vector>

namespace engine {

namespace {

using Object = QPDFObjectHandle;
using Seen = std::set<QPDFObjGen>;

// Those on the next level that were not seen before: a broken outline leads in circles, in which
// libqpdf 11.3 does not end.
std::vector<Object> entriesBelow(Object parent, Seen &seen)
{
    std::vector<Object> entries;
    Object entry = parent.getKey("/First");
    while (entry.isDictionary() && seen.insert(entry.getObjGen()).second) {
        entries.push_back(entry);
        entry = entry.getKey("/Next");
    }
    return entries;
}

std::size_t countBelow(Object parent, Seen &seen)
{
    const auto entries = entriesBelow(parent, seen);
    std::size_t count = entries.size();
    for (const auto &entry : entries)
        count += countBelow(entry, seen);
    return count;
}

Object outlineOf(QPDF &document)
{
    Object outline = document.getRoot().getKey("/Outlines");
    return outline.isDictionary() ? outline : Object::newDictionary();
}

class OutlineRestorer
{
public:
    OutlineRestorer(QPDF &copy, QPDF &original)
        : m_copy(copy)
        , m_destinations(copy, original)
    {
    }

    /// Puts copies of the entries below the original's parent below the copy's; returns how many of
    /// them are seen while it is open.
    int fill(Object parent, Object originalParent)
    {
        int seen = 0;
        Object previous = Object::newNull();
        for (const auto &entry : entriesBelow(originalParent, m_seen)) {
            Object made = m_copy.makeIndirectObject(entryFor(entry, parent));
            seen += 1 + fillEntry(made, entry);
            if (previous.isNull())
                parent.replaceKey("/First", made);
            else
                previous.replaceKey("/Next", made);
            made.replaceKey("/Prev", previous);
            parent.replaceKey("/Last", made);
            previous = made;
        }
        return seen;
    }

private:
    int fillEntry(Object made, Object entry)
    {
        Object count = entry.getKey("/Count");
        const bool isOpen = count.isInteger() && count.getIntValue() > 0;
        const int seen = fill(made, entry);
        if (seen > 0)
            made.replaceKey("/Count", Object::newInteger(isOpen ? seen : -seen));
        return isOpen ? seen : 0;
    }

    Object entryFor(Object entry, Object parent)
    {
        Object made = Object::newDictionary();
        made.replaceKey("/Parent", parent);
        for (const char *key : {"/Title", "/C", "/F"})
            made.replaceKey(key, broughtInto(m_copy, entry.getKey(key)));
        Object action = entry.getKey("/A");
        if (isOf(action, "/URI")) {
            made.replaceKey("/A", broughtInto(m_copy, action));
            return made;
        }
        Object destination = isOf(action, "/GoTo") ? action.getKey("/D") : entry.getKey("/Dest");
        made.replaceKey("/Dest", m_destinations.inCopy(destination));
        return made;
    }

    static bool isOf(Object action, const char *kind)
    {
        return action.isDictionary() && action.getKey("/S").isNameAndEquals(kind);
    }

    QPDF &m_copy;
    Destinations m_destinations;
    Seen m_seen;
};

} // namespace

std::size_t outlineEntries(QPDF &document)
{
    Seen seen;
    return countBelow(outlineOf(document), seen);
}

void restoreOutline(QPDF &copy, QPDF &original)
{
    if (outlineEntries(copy) >= outlineEntries(original))
        return;
    Object outline = copy.makeIndirectObject(Object::parse("<< /Type /Outlines >>"));
    const int seen = OutlineRestorer(copy, original).fill(outline, outlineOf(original));
    outline.replaceKey("/Count", Object::newInteger(seen));
    copy.getRoot().replaceKey("/Outlines", outline);
}

} // namespace engine
