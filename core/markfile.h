#pragma once

#include <QString>

namespace core {

/// The document description, as typed.
struct Description
{
    QString title;
    QString author;
    QString subject;
    QString keywords;
    QString creator;
    QString producer;
};

/// PostScript that puts a description into the output. Nothing is escaped: an unbalanced
/// parenthesis makes the engine fail on the mark.
QString markText(const Description &description);

/// PostScript that blanks the creator and the producer of the output.
QString blankMarkText();

/// Replaces the file by the text, in the locale's encoding, which Qt 6 takes to be UTF-8 on Unix. A
/// file that can't be opened is left as it is, and nothing is reported.
void writeMarkFile(const QString &path, const QString &text);

} // namespace core
