#include "output.h"

#include <QString>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

void writeTo(FILE *stream, const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stream);
    std::fflush(stream);
}

} // namespace

void write(const QByteArray &text)
{
    writeTo(stdout, text);
}

void writeError(const QByteArray &text)
{
    writeTo(stderr, text);
}

// A file's name may be anything, and is not to work the terminal.
void complain(const QString &text)
{
    QByteArray line = "corvane-batch: " + text.toLocal8Bit();
    std::ranges::replace_if(
        line, [](unsigned char letter) { return letter < 0x20 || letter == 0x7f; }, '?');
    writeTo(stderr, line + '\n');
}

} // namespace batch
