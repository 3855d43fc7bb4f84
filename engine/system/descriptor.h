#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace engine {

/// Owns a file descriptor; -1 is none.
class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() { close(); }

    [[nodiscard]] int get() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

    /// False (and errno) if the system says only now that what was written is lost.
    bool close()
    {
        return m_number < 0 || ::close(std::exchange(m_number, -1)) == 0 || errno == EINTR;
    }

private:
    int m_number = -1;
};

} // namespace engine
