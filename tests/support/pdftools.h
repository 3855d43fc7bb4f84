#pragma once

#include <QImage>
#include <QList>
#include <QMap>
#include <QString>

/// What independent programs say about a PDF file: those of poppler and qpdf.
namespace tools {

struct Image
{
    int width = 0;
    int components = 0;
    int bits = 0; ///< per component
    int dpi = 0;
    QString filter; ///< the PDF name of its compression
};
/// The images of the file, in the order of drawing.
QList<Image> images(const QString &pdf);

/// The pixels of the image at that place in the order.
QImage pixels(const QString &pdf, int image);

struct Font
{
    QString name;
    bool embedded = false;
    bool subset = false;
};
QList<Font> fonts(const QString &pdf);

/// The document information as pdfinfo shows it: "Title", "Author", ...
QMap<QString, QString> information(const QString &pdf);

/// What the file allows to somebody who only has the user password.
struct Permissions
{
    bool print = false;
    bool change = false;
    bool copy = false;
    bool comment = false;
};
Permissions permissions(const QString &pdf, const QString &userPassword);

/// True if the file can't be opened without a password.
bool asksForPassword(const QString &pdf);

/// True if the password opens the file.
bool opensWith(const QString &pdf, const QString &password);

} // namespace tools
