#include "walk.h"

#include <functional>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <set>

namespace engine {

namespace {

// Forms within forms; a stack overflow is nobody's drawing.
constexpr int deepest = 100;

class Drawn
{
public:
    void visitResources(QPDFObjectHandle resources, int depth)
    {
        QPDFObjectHandle objects =
            resources.isDictionary() ? resources.getKey("/XObject") : QPDFObjectHandle::newNull();
        if (!objects.isDictionary() || depth > deepest || !isNew(objects))
            return;
        for (auto [name, object] : objects.getDictAsMap())
            visit(object, depth);
    }

    std::vector<QPDFObjectHandle> take() { return std::move(m_objects); }

private:
    // What lies directly in a page is met there only.
    bool isNew(QPDFObjectHandle object)
    {
        return !object.isIndirect() || m_seen.insert(object.getObjGen()).second;
    }

    void visit(QPDFObjectHandle object, int depth)
    {
        if (!object.isStream() || !isNew(object))
            return;
        m_objects.push_back(object);
        visitResources(object.getDict().getKey("/Resources"), depth + 1);
    }

    std::vector<QPDFObjectHandle> m_objects;
    std::set<QPDFObjGen> m_seen;
};

void pushChildren(QPDFObjectHandle object, std::vector<QPDFObjectHandle> &waiting)
{
    if (object.isArray()) {
        for (const auto &item : object.getArrayAsVector())
            waiting.push_back(item);
        return;
    }
    QPDFObjectHandle dictionary = object.isStream() ? object.getDict() : object;
    if (!dictionary.isDictionary())
        return;
    for (const auto &[key, value] : dictionary.getDictAsMap())
        waiting.push_back(value);
}

// Visits what leads from the trailer to the last page, objects with a number of their own once.
void walk(QPDF &document, const std::function<void(QPDFObjectHandle)> &visit)
{
    std::set<QPDFObjGen> seen;
    std::vector<QPDFObjectHandle> waiting = {document.getTrailer()};
    while (!waiting.empty()) {
        const QPDFObjectHandle object = waiting.back();
        waiting.pop_back();
        if (object.isIndirect() && !seen.insert(object.getObjGen()).second)
            continue;
        visit(object);
        pushChildren(object, waiting);
    }
}

} // namespace

std::vector<QPDFObjectHandle> reachableObjects(QPDF &document)
{
    std::vector<QPDFObjectHandle> objects;
    walk(document, [&](QPDFObjectHandle object) {
        if (object.isIndirect())
            objects.push_back(object);
    });
    return objects;
}

std::vector<QPDFObjectHandle> reachableDictionaries(QPDF &document)
{
    std::vector<QPDFObjectHandle> dictionaries;
    walk(document, [&](QPDFObjectHandle object) {
        if (object.isDictionary() || object.isStream())
            dictionaries.push_back(object.isStream() ? object.getDict() : object);
    });
    return dictionaries;
}

std::vector<QPDFObjectHandle> drawnObjects(QPDF &document)
{
    Drawn drawn;
    for (auto &page : QPDFPageDocumentHelper(document).getAllPages())
        drawn.visitResources(page.getAttribute("/Resources", false), 0);
    return drawn.take();
}

} // namespace engine
