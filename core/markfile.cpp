#include "markfile.h"

#include <QFile>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace core {

// One substitution after the other, not one arg() with six arguments: a marker typed into a field
// is filled by a later field, and existing descriptions may rely on it.
QString markText(const Description &description)
{
    const QString mark = u"[ /Title (%1)\n /Author (%2) \n /Subject (%3) \n /Keywords (%4)"
                         " \n /Creator (%5) \n /Producer (%6) \n /DOCINFO pdfmark"_s;
    return mark.arg(description.title)
        .arg(description.author)
        .arg(description.subject)
        .arg(description.keywords)
        .arg(description.creator) // clazy:exclude=qstring-arg
        .arg(description.producer);
}

QString blankMarkText()
{
    return u" [ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark"_s;
}

void writeMarkFile(const QString &path, const QString &text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QTextStream stream(&file);
    stream.setEncoding(QStringConverter::System);
    stream << text;
}

} // namespace core
