#include "contentwalk.h"

#include "contentnesting.h"
#include "pdf/pageboxes.h"
#include "system/progress.h"

#include <optional>
#include <qpdf/QPDFPageObjectHelper.hh>

namespace engine {

void ContentVisitor::image(const Shown &, QPDFObjectHandle, const Matrix &) {}
void ContentVisitor::text(const Shown &, QPDFObjectHandle, const std::string &) {}
void ContentVisitor::resource(QPDFObjectHandle, const std::string &, const std::string &) {}
void ContentVisitor::unclear(const Shown &, QPDFObjectHandle) {}

namespace {

constexpr int hiddenFlag = 1 << 1;
constexpr int noViewFlag = 1 << 5;

// Fields within fields.
constexpr int deepest = 50;

Matrix formMatrixOf(QPDFObjectHandle form)
{
    QPDFObjectHandle array = form.getDict().getKey("/Matrix");
    if (!array.isMatrix())
        return {};
    const auto matrix = array.getArrayAsMatrix();
    return {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f};
}

// What an appearance's box, turned as its matrix says, becomes the annotation's rectangle by.
std::optional<Matrix> appearanceMatrix(QPDFObjectHandle annotation, QPDFObjectHandle appearance)
{
    const auto rectangle = boxOf(annotation.getKey("/Rect"));
    const auto box = boxOf(appearance.getDict().getKey("/BBox"));
    if (!rectangle || !box)
        return {};
    const Matrix own = formMatrixOf(appearance);
    const Box turned = boundsOf(*box, own);
    const double width = turned.right - turned.left;
    const double height = turned.top - turned.bottom;
    if (width <= 0 || height <= 0)
        return {};
    const double x = (rectangle->right - rectangle->left) / width;
    const double y = (rectangle->top - rectangle->bottom) / height;
    return product(own, {x, 0, 0, y, rectangle->left - turned.left * x,
                         rectangle->bottom - turned.bottom * y});
}

class Walk
{
public:
    Walk(QPDF &document, ContentVisitor &visitor)
        : m_document(document)
        , m_layers(document)
        , m_nesting(visitor, m_layers)
    {
    }

    void walk()
    {
        int index = 0;
        for (const auto &page : m_document.getAllPages()) {
            walkPage(page, index++);
            reportProgress();
        }
        m_nesting.enterPage({});
        QPDFObjectHandle form = m_document.getRoot().getKey("/AcroForm");
        if (form.isDictionary())
            walkFields(form.getKey("/Fields"), 0);
    }

private:
    void walkPage(QPDFObjectHandle page, int index)
    {
        const double unit = unitOf(page);
        m_nesting.enterPage(pageViewOf(page, index).crop);
        ContentScope scope(QPDFPageObjectHelper(page).getAttribute("/Resources", false),
                           page.getObjGen(), nullptr);
        const ContentStart start{{index}, {unit, 0, 0, unit, 0, 0}};
        m_nesting.showPage(page, scope, start);
        QPDFObjectHandle annotations = page.getKey("/Annots");
        if (!annotations.isArray())
            return;
        for (const auto &annotation : annotations.getArrayAsVector())
            walkAnnotation(annotation, start, scope);
    }

    // A field's widget that no page shows is still one that a reader may show.
    void walkFields(QPDFObjectHandle fields, int depth)
    {
        if (!fields.isArray() || depth > deepest)
            return;
        for (auto &field : fields.getArrayAsVector()) {
            if (!field.isDictionary() || !isNew(field))
                continue;
            ContentScope scope(QPDFObjectHandle::newNull(), {}, nullptr);
            walkAppearances(field, {{-1, false}, {}}, scope);
            walkFields(field.getKey("/Kids"), depth + 1);
        }
    }

    bool isNew(QPDFObjectHandle annotation)
    {
        return !annotation.isIndirect() || m_annotations.insert(annotation.getObjGen()).second;
    }

    void walkAnnotation(QPDFObjectHandle annotation, const ContentStart &page, ContentScope &scope)
    {
        if (!annotation.isDictionary())
            return;
        isNew(annotation);
        QPDFObjectHandle flags = annotation.getKey("/F");
        const long long set = flags.isInteger() ? flags.getIntValue() : 0;
        ContentStart here = page;
        here.shown.drawn = (set & (hiddenFlag | noViewFlag)) == 0 &&
                           m_layers.shows(annotation.getKey("/OC")) &&
                           !annotation.getKey("/Subtype").isNameAndEquals("/Popup");
        walkAppearances(annotation, here, scope);
    }

    void walkAppearances(QPDFObjectHandle annotation, const ContentStart &start,
                         ContentScope &scope)
    {
        QPDFObjectHandle appearances = annotation.getKey("/AP");
        if (!appearances.isDictionary())
            return;
        QPDFObjectHandle state = annotation.getKey("/AS");
        for (const char *kind : {"/N", "/R", "/D"}) {
            QPDFObjectHandle appearance = appearances.getKey(kind);
            const bool isNormal = kind == std::string("/N");
            if (appearance.isStream())
                show(annotation, appearance, start, isNormal, scope);
            if (!appearance.isDictionary())
                continue;
            for (auto &[name, stream] : appearance.getDictAsMap())
                show(annotation, stream, start, isNormal && state.isNameAndEquals(name), scope);
        }
    }

    void show(QPDFObjectHandle annotation, QPDFObjectHandle appearance, const ContentStart &start,
              bool isCurrent, ContentScope &scope)
    {
        if (!appearance.isStream())
            return;
        const auto matrix = appearanceMatrix(annotation, appearance);
        ContentStart here = start;
        here.shown.page = matrix ? start.shown.page : -1;
        here.shown.drawn = start.shown.drawn && isCurrent && matrix &&
                           m_layers.shows(appearance.getDict().getKey("/OC"));
        here.matrix = product(matrix.value_or(Matrix()), start.matrix);
        m_nesting.show(appearance, appearance.getDict().getKey("/Resources"), here, scope);
    }

    QPDF &m_document;
    Layers m_layers;
    ContentNesting m_nesting;
    std::set<QPDFObjGen> m_annotations;
};

} // namespace

void walkContent(QPDF &document, ContentVisitor &visitor)
{
    Walk(document, visitor).walk();
}

} // namespace engine
