#include "links.h"

#include "destinations.h"
#include "pdf/foreign.h"
#include "pdf/walk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;
using Pages = std::vector<QPDFPageObjectHelper>;

constexpr int printFlag = 4;

using Plane = std::array<double, 6>;

// Where the numbers of a page lead. Ghostscript moves a page whose corner is not the origin, turns
// a turned one, and enlarges one with a unit of its own.
Plane planeOf(QPDFPageObjectHelper page)
{
    const auto box = page.getMediaBox().getArrayAsRectangle();
    const auto numberOf = [&page](const char *key, double without) {
        Object number = page.getAttribute(key, false);
        return number.isNumber() ? number.getNumericValue() : without;
    };
    // Sizes are written with two decimals.
    return {box.llx,
            box.lly,
            std::round(box.urx),
            std::round(box.ury),
            numberOf("/Rotate", 0),
            numberOf("/UserUnit", 1)};
}

class LinkRestorer
{
public:
    LinkRestorer(QPDF &copy, QPDF &original, bool printable)
        : m_copy(copy)
        , m_original(original)
        , m_printable(printable)
        , m_pages(QPDFPageDocumentHelper(original).getAllPages())
        , m_copyPages(QPDFPageDocumentHelper(copy).getAllPages())
        , m_destinations(copy, original)
    {
    }

    void restore()
    {
        for (std::size_t index = 0; index < m_pages.size() && index < m_copyPages.size(); ++index) {
            const auto links = m_pages[index].getAnnotations("/Link");
            const auto kept = m_copyPages[index].getAnnotations("/Link");
            if (kept.size() < links.size() && isSamePlane(m_pages[index], m_copyPages[index]))
                replaceLinks(m_copyPages[index].getObjectHandle(), links);
        }
        restoreOpening();
    }

    /// Whether a destination of the original names a place on a page that lies otherwise in the
    /// copy.
    bool misleads()
    {
        std::vector<bool> moved;
        for (std::size_t index = 0; index < m_pages.size(); ++index)
            moved.push_back(index >= m_copyPages.size() ||
                            !isSamePlane(m_pages[index], m_copyPages[index]));
        if (std::find(moved.begin(), moved.end(), true) == moved.end())
            return false;
        const auto holders = reachableDictionaries(m_original);
        return std::any_of(holders.begin(), holders.end(),
                           [&](Object holder) { return namesMovedPlace(holder, moved); });
    }

private:
    // Links, outline entries, actions and the catalogue keep their destination under one of these.
    bool namesMovedPlace(Object holder, const std::vector<bool> &moved)
    {
        return isMovedPlace(holder.getKey("/Dest"), moved) ||
               isMovedPlace(holder.getKey("/D"), moved) ||
               isMovedPlace(holder.getKey("/OpenAction"), moved);
    }

    bool isMovedPlace(Object destination, const std::vector<bool> &moved)
    {
        destination = m_destinations.arrayOf(destination);
        if (!destination.isArray() || destination.getArrayNItems() < 3)
            return false;
        const auto page = m_destinations.pageOf(destination);
        if (!page || !moved[*page])
            return false;
        const auto items = destination.getArrayAsVector();
        return std::any_of(items.begin() + 2, items.end(), [](Object item) {
            return item.isNumber() && item.getNumericValue() != 0;
        });
    }

    static bool isSamePlane(QPDFPageObjectHelper page, QPDFPageObjectHelper copy);
    void restoreOpening();
    void replaceLinks(Object page, const std::vector<QPDFAnnotationObjectHelper> &links);
    Object linkFor(Object link);

    QPDF &m_copy;
    QPDF &m_original;
    bool m_printable;
    Pages m_pages;
    Pages m_copyPages;
    Destinations m_destinations;
};

bool LinkRestorer::isSamePlane(QPDFPageObjectHelper page, QPDFPageObjectHelper copy)
{
    return planeOf(page) == planeOf(copy);
}

void LinkRestorer::replaceLinks(Object page, const std::vector<QPDFAnnotationObjectHelper> &links)
{
    Object annotations = Object::newArray();
    if (page.getKey("/Annots").isArray()) {
        for (const auto &annotation : page.getKey("/Annots").getArrayAsVector()) {
            if (!Object(annotation).getKey("/Subtype").isNameAndEquals("/Link"))
                annotations.appendItem(annotation);
        }
    }
    for (auto link : links)
        annotations.appendItem(m_copy.makeIndirectObject(linkFor(link.getObjectHandle())));
    page.replaceKey("/Annots", annotations);
}

// Only where it leads to a place: what runs of itself is left out.
void LinkRestorer::restoreOpening()
{
    Object opening = m_original.getRoot().getKey("/OpenAction");
    if (opening.isDictionary() && opening.getKey("/S").isNameAndEquals("/GoTo"))
        opening = opening.getKey("/D");
    Object destination =
        m_destinations.inCopy(opening.isDictionary() ? Object::newNull() : opening);
    if (destination.isArray() && !m_copy.getRoot().hasKey("/OpenAction"))
        m_copy.getRoot().replaceKey("/OpenAction", destination);
}

// What leads back into the original, such as /P and /StructParent, stays behind.
Object LinkRestorer::linkFor(Object link)
{
    Object result = Object::parse("<< /Type /Annot /Subtype /Link >>");
    for (const char *key :
         {"/Rect", "/Border", "/BS", "/C", "/H", "/F", "/QuadPoints", "/Contents"}) {
        if (link.hasKey(key))
            result.replaceKey(key, broughtInto(m_copy, link.getKey(key)));
    }
    if (m_printable)
        result.replaceKey("/F", Object::newInteger(printFlag));
    Object action = link.getKey("/A");
    if (action.isDictionary() && !action.getKey("/S").isNameAndEquals("/GoTo")) {
        result.replaceKey("/A", broughtInto(m_copy, action));
        return result;
    }
    Object destination = action.isDictionary() ? action.getKey("/D") : link.getKey("/Dest");
    result.replaceKey("/Dest", m_destinations.inCopy(destination));
    return result;
}

} // namespace

bool misleadsLinks(QPDF &copy, QPDF &original)
{
    return LinkRestorer(copy, original, false).misleads();
}

void restoreLinks(QPDF &copy, QPDF &original, bool printable)
{
    LinkRestorer(copy, original, printable).restore();
}

} // namespace engine
