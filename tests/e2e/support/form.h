#pragma once

#include <QHash>
#include <QRect>
#include <QString>

/// Where the widgets of a form lie in their window, as its .ui file says.
class Form
{
public:
    explicit Form(const QString &file);

    /// In the window's coordinates.
    QRect rect(const QString &widget) const;

private:
    QHash<QString, QRect> m_rects;
};
