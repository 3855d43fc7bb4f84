#include "machine.h"

#include "tools.h"

#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <unistd.h>

#ifdef __linux__
#include <sys/syscall.h>
#endif

using namespace Qt::StringLiterals;

namespace machine {

// Only those who aren't root need a user name space for it, which a changed root folder forbids.
QStringList onTinyDisk(const QString &folder, const QString &options, const QStringList &command)
{
    QStringList arguments{u"--mount"_s};
    if (geteuid() != 0)
        arguments << u"--user"_s << u"--map-root-user"_s;
    arguments << u"sh"_s << u"-c"_s
              << u"mount -t tmpfs -o \"$1\" corvane \"$0\" || exit 99; shift; exec \"$@\""_s
              << folder << options;
    return arguments + command;
}

// Tried out, once: in a container it may fail for many reasons.
QString whyNoTinyDisk()
{
    static const QString reason = [] {
        const QTemporaryDir folder;
        const tools::Result tried =
            tools::run(u"unshare"_s, onTinyDisk(folder.path(), u"size=4k"_s, {u"true"_s}));
        if (tried.status == 0)
            return QString();
        return "no mount name space with a disk of its own: "_L1 +
               QString::fromUtf8(tried.errors).simplified();
    }();
    return reason;
}

QString whyNoLandlock()
{
#ifdef SYS_landlock_create_ruleset
    constexpr unsigned askForVersion = 1;
    if (syscall(SYS_landlock_create_ruleset, nullptr, 0, askForVersion) > 0)
        return {};
    return "no Landlock: "_L1 + QString::fromLocal8Bit(std::strerror(errno));
#else
    return u"no Landlock on this system"_s;
#endif
}

} // namespace machine
