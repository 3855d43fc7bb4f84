#include "namelist.h"

#include "batch/refusal.h"

#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

constexpr qint64 pieceSize = 1 << 16;

void openList(QFile &file, const QString &name)
{
    const bool opened =
        name == "-"_L1 ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!opened)
        throw Refusal(u"the list %1 can't be read: %2"_s.arg(name, file.errorString()));
}

} // namespace

void forEachName(const QString &listFile, const std::function<void(const QByteArray &)> &take)
{
    QFile file(listFile);
    openList(file, listFile);
    QByteArray rest;
    bool hasEnds = false;
    for (QByteArray piece = file.read(pieceSize); !piece.isEmpty(); piece = file.read(pieceSize)) {
        rest += piece;
        qsizetype begin = 0;
        for (auto end = rest.indexOf('\0'); end >= 0; end = rest.indexOf('\0', begin)) {
            hasEnds = true;
            if (end > begin)
                take(rest.mid(begin, end - begin));
            begin = end + 1;
        }
        rest.remove(0, begin);
    }
    if (file.error() != QFileDevice::NoError)
        throw Refusal(u"the list %1 can't be read: %2"_s.arg(listFile, file.errorString()));
    if (!hasEnds && rest.contains('\n'))
        throw Refusal(
            u"the names in %1 have to end with NUL, as find -print0 writes them"_s.arg(listFile));
    if (!rest.isEmpty())
        take(rest);
}

} // namespace batch
