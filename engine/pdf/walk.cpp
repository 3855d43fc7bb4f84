#include "walk.h"

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

} // namespace

std::vector<QPDFObjectHandle> reachableObjects(QPDF &document)
{
    std::vector<QPDFObjectHandle> objects;
    std::set<QPDFObjGen> seen;
    std::vector<QPDFObjectHandle> waiting = {document.getTrailer()};
    while (!waiting.empty()) {
        QPDFObjectHandle object = waiting.back();
        waiting.pop_back();
        if (object.isIndirect()) {
            if (!seen.insert(object.getObjGen()).second)
                continue;
            objects.push_back(object);
        }
        pushChildren(object, waiting);
    }
    return objects;
}

std::vector<QPDFObjectHandle> drawnObjects(QPDF &document)
{
    Drawn drawn;
    for (auto &page : QPDFPageDocumentHelper(document).getAllPages())
        drawn.visitResources(page.getAttribute("/Resources", false), 0);
    return drawn.take();
}

} // namespace engine
