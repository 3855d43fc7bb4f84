#include "links.h"

#include "foreign.h"

#include <map>
#include <qpdf/QPDFNameTreeObjectHelper.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;
using Pages = std::vector<QPDFPageObjectHelper>;

constexpr int printFlag = 4;

class LinkRestorer
{
public:
    LinkRestorer(QPDF &copy, QPDF &original, bool printable)
        : m_copy(copy)
        , m_original(original)
        , m_printable(printable)
        , m_pages(QPDFPageDocumentHelper(original).getAllPages())
        , m_copyPages(QPDFPageDocumentHelper(copy).getAllPages())
    {
        for (std::size_t index = 0; index < m_pages.size(); ++index)
            m_numbers[m_pages[index].getObjectHandle().getObjGen()] = index;
    }

    void restore()
    {
        for (std::size_t index = 0; index < m_pages.size() && index < m_copyPages.size(); ++index) {
            const auto links = m_pages[index].getAnnotations("/Link");
            const auto kept = m_copyPages[index].getAnnotations("/Link");
            if (kept.size() < links.size() && isSamePlane(m_pages[index], m_copyPages[index]))
                replaceLinks(m_copyPages[index].getObjectHandle(), links);
        }
    }

private:
    static bool isSamePlane(QPDFPageObjectHelper page, QPDFPageObjectHelper copy);
    void replaceLinks(Object page, const std::vector<QPDFAnnotationObjectHelper> &links);
    Object linkFor(Object link);
    Object destinationFor(Object destination);
    Object explicitDestination(Object destination);
    Object namedDestination(Object name);

    QPDF &m_copy;
    QPDF &m_original;
    bool m_printable;
    Pages m_pages;
    Pages m_copyPages;
    std::map<QPDFObjGen, std::size_t> m_numbers;
};

// Ghostscript moves a page whose corner is not the origin, and may turn one.
bool LinkRestorer::isSamePlane(QPDFPageObjectHelper page, QPDFPageObjectHelper copy)
{
    const auto cornerOf = [](QPDFPageObjectHelper &helper) {
        const auto box = helper.getMediaBox().getArrayAsRectangle();
        return std::pair(box.llx, box.lly);
    };
    const auto turnOf = [](QPDFPageObjectHelper &helper) {
        Object turn = helper.getAttribute("/Rotate", false);
        return turn.isInteger() ? turn.getIntValue() : 0;
    };
    return cornerOf(page) == cornerOf(copy) && turnOf(page) == turnOf(copy);
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
    if (action.isDictionary() && !action.getKey("/S").isNameAndEquals("/GoTo"))
        result.replaceKey("/A", broughtInto(m_copy, action));
    else
        result.replaceKey("/Dest", destinationFor(action.isDictionary() ? action.getKey("/D")
                                                                        : link.getKey("/Dest")));
    return result;
}

Object LinkRestorer::destinationFor(Object destination)
{
    if (destination.isString() || destination.isName())
        destination = namedDestination(destination);
    if (destination.isDictionary())
        destination = destination.getKey("/D");
    return destination.isArray() ? explicitDestination(destination) : Object::newNull();
}

Object LinkRestorer::explicitDestination(Object destination)
{
    Object result = Object::newArray();
    for (const auto &item : destination.getArrayAsVector()) {
        if (result.getArrayNItems() > 0) {
            result.appendItem(broughtInto(m_copy, item));
            continue;
        }
        const auto number = m_numbers.find(item.getObjGen());
        if (number == m_numbers.end() || number->second >= m_copyPages.size())
            return Object::newNull();
        result.appendItem(m_copyPages[number->second].getObjectHandle());
    }
    return result;
}

Object LinkRestorer::namedDestination(Object name)
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

} // namespace

void restoreLinks(QPDF &copy, QPDF &original, bool printable)
{
    LinkRestorer(copy, original, printable).restore();
}

} // namespace engine
