#pragma once

#include <QString>
#include <QStringList>

/// What some machines, containers above all, can't give a test.
namespace machine {

/// Arguments for unshare(1) that run a command in a mount name space of its own, in which an
/// existing folder is a disk of its own. `options` are those of tmpfs. The command's status, or 99
/// if there is no such disk.
QStringList onTinyDisk(const QString &folder, const QString &options, const QStringList &command);

/// Why there can't be such a disk; empty if there can.
QString whyNoTinyDisk();

/// Why the kernel does not confine programs by Landlock; empty if it does.
QString whyNoLandlock();

} // namespace machine

/// In a test function: skips the test if there is a reason, and says it. script/test lists what was
/// skipped.
#define SKIP_IF(reason)                                                                            \
    do {                                                                                           \
        const QString skipReason = (reason);                                                       \
        if (!skipReason.isEmpty())                                                                 \
            QSKIP(qPrintable(skipReason));                                                         \
    } while (false)
