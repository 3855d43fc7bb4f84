#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// Documents around the font programs that makefonts.py writes.
namespace fontdocuments {

/// The bytes of a program, such as "unicode.ttf".
QByteArray program(const QString &name);

/// A font and its program.
struct Font
{
    QByteArray program = {};
    QByteArray key = "/FontFile2";      ///< of the descriptor
    QByteArray streamEntries = {};      ///< of the program's stream, such as /Subtype /Type1C
    QByteArray entries = {};            ///< of a simple font, or of the descendant
    QByteArray composite = {};          ///< of the font around a descendant; empty: it is simple
    QByteArray descriptor = "/Flags 4"; ///< further entries of the descriptor
};

/// What a document has beside its font.
struct Rest
{
    QByteArray catalogue = {};      ///< more entries
    QByteArray page = {};           ///< more entries
    QByteArray resources = {};      ///< more entries of the page's resources
    QList<QByteArray> objects = {}; ///< numbered from 9
};

constexpr int fontObject = 5;
constexpr int programObject = 8;

/// One page that shows this in the font /F, whose object is the fifth; the descendant is the sixth
/// (a null object for simple fonts), the descriptor the seventh and the program the eighth.
QByteArray showing(const QByteArray &content, const Font &font, const Rest &rest = {});

/// The operators that show codes, given in hexadecimal digits.
QByteArray text(const QByteArray &codes);

} // namespace fontdocuments
