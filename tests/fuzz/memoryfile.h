#pragma once

#include "input.h"

#include <QFile>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

/// The input as a file that lies in memory only, for parsers that take a file's name.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t *data, std::size_t size)
        : m_descriptor(newDescriptor())
    {
        promise(write(m_descriptor, data, size) == static_cast<ssize_t>(size));
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    [[nodiscard]] QString path() const
    {
        return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor);
    }

private:
    // QSettings doesn't read a file again that has the same name, size and time. So the numbers,
    // and with them the names, go round.
    static int newDescriptor()
    {
        static int round = 0;
        const int lowest = memfd_create("input", MFD_CLOEXEC);
        const int descriptor = fcntl(lowest, F_DUPFD_CLOEXEC, 100 + round++ % 800);
        close(lowest);
        return descriptor;
    }

    int m_descriptor;
};
