#include "formlook.h"

#include <QDataStream>
#include <QFont>
#include <QFontInfo>
#include <QIODevice>
#include <QLabel>
#include <QPalette>
#include <QPixmap>
#include <QTextDocument>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace formlook {

namespace {

// The roles that are drawn on or around our pictures.
constexpr QPalette::ColorRole replacedRoles[] = {
    QPalette::WindowText,
    QPalette::Button,
    QPalette::Light,
    QPalette::Midlight,
    QPalette::Dark,
    QPalette::Mid,
    QPalette::Text,
    QPalette::BrightText,
    QPalette::ButtonText,
    QPalette::Base,
    QPalette::Shadow,
    QPalette::AlternateBase,
    QPalette::PlaceholderText,
    QPalette::Link,
    QPalette::Highlight,
    QPalette::HighlightedText,
    QPalette::LinkVisited,
};

constexpr QPalette::ColorGroup groups[] = {QPalette::Active, QPalette::Inactive,
                                           QPalette::Disabled};

const QColor lightControls(0xef, 0xef, 0xef);
const QColor selection(0x1d, 0x6a, 0xa8); // white on it has a contrast of 5.8

// In pixels, and 10 points on a usual desktop: one more, and "Remove All" is cut off.
constexpr int largestDefault = 13;

// A light palette of Qt's making: complete, with disabled colours, and the same on every desktop.
QPalette lightPalette()
{
    QPalette palette(lightControls);
    palette.setColor(QPalette::PlaceholderText, palette.color(QPalette::Dark));
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, Qt::blue);
    palette.setColor(QPalette::LinkVisited, Qt::darkMagenta);
    return palette;
}

QPalette readable(QPalette palette)
{
    const QPalette light = lightPalette();
    for (const QPalette::ColorGroup group : groups) {
        for (const QPalette::ColorRole role : replacedRoles)
            palette.setColor(group, role, light.color(group, role));
    }
    return palette;
}

// Its own, or that of a widget that it lies in.
bool hasStyleSheet(const QWidget *widget)
{
    return widget && (!widget->styleSheet().isEmpty() || hasStyleSheet(widget->parentWidget()));
}

} // namespace

// A QFont holds a point size and a pixel size and is drawn by the latter, but its setters clear one
// when they set the other. Its stream format, stable since Qt 4.0, carries both. Other ways to get
// 72 dpi reach further than our forms: QT_FONT_DPI also undoes the desktop's scale factor on X11.
QFont pointsAsPixels(const QFont &font)
{
    constexpr auto layout = QDataStream::Qt_6_0; // family, style, point size, pixel size, ...
    QByteArray stored;
    {
        QDataStream out(&stored, QIODevice::WriteOnly);
        out.setVersion(layout);
        out << font;
    }
    {
        QDataStream patch(&stored, QIODevice::ReadWrite);
        patch.setVersion(layout);
        QString family;
        QString style;
        double pointSize = 0;
        patch >> family >> style >> pointSize;
        patch << qint32(qRound(pointSize));
    }
    QFont both;
    QDataStream in(stored);
    in.setVersion(layout);
    in >> both;
    both.setResolveMask(font.resolveMask());
    return both;
}

void fitFonts(QWidget &form)
{
    if (QFontInfo(form.font()).pixelSize() > largestDefault) {
        QFont smaller = form.font();
        smaller.setPixelSize(largestDefault);
        form.setFont(smaller);
    }
    for (QWidget *widget : form.findChildren<QWidget *>()) {
        const QFont font = widget->font();
        const bool own = widget->testAttribute(Qt::WA_SetFont);
        if (own && (font.resolveMask() & QFont::SizeResolved))
            widget->setFont(pointsAsPixels(font));
    }
}

void layOnPicture(QWidget &form, const QString &picturePath)
{
    QPalette palette = readable(form.palette());
    const QPixmap picture(picturePath);
    palette.setBrush(QPalette::Window,
                     picture.scaled(form.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    form.setPalette(palette);

    // A style sheet fixes the desktop's palette on its widget and all in it.
    for (QWidget *widget : form.findChildren<QWidget *>()) {
        if (hasStyleSheet(widget))
            widget->setPalette(readable(widget->palette()));
    }
}

// Rich text takes the desktop's link colour, whatever the label's palette says, unless its document
// has a style sheet.
void colourLinks(QLabel &label)
{
    const QString colour = label.palette().color(QPalette::Link).name();
    for (auto *document : label.findChildren<QTextDocument *>())
        document->setDefaultStyleSheet(u"a { color: %1; }"_s.arg(colour));
}

} // namespace formlook
