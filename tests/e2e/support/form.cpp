#include "form.h"

#include <QDomDocument>
#include <QFile>

namespace {

QDomElement child(const QDomElement &parent, const QString &tag, const QString &name = {})
{
    QDomElement element = parent.firstChildElement(tag);
    while (!name.isEmpty() && !element.isNull() && element.attribute("name") != name)
        element = element.nextSiblingElement(tag);
    return element;
}

QRect geometry(const QDomElement &widget)
{
    const QDomElement rect = child(child(widget, "property", "geometry"), "rect");
    const auto number = [&rect](const char *tag) { return child(rect, tag).text().toInt(); };
    return {number("x"), number("y"), number("width"), number("height")};
}

void collect(const QDomElement &widget, const QPoint &origin, QHash<QString, QRect> &rects)
{
    const QRect rect = geometry(widget).translated(origin);
    rects.insert(widget.attribute("name"), rect);
    for (QDomElement inner = child(widget, "widget"); !inner.isNull();
         inner = inner.nextSiblingElement("widget"))
        collect(inner, rect.topLeft(), rects);
}

} // namespace

Form::Form(const QString &file)
{
    QFile xml(file);
    QDomDocument document;
    if (!xml.open(QIODevice::ReadOnly) || !document.setContent(&xml))
        qFatal("no form %s", qPrintable(file));
    collect(child(document.documentElement(), "widget"), {}, m_rects);
}

QRect Form::rect(const QString &widget) const
{
    if (!m_rects.contains(widget))
        qFatal("no %s in the form", qPrintable(widget));
    return m_rects.value(widget);
}
