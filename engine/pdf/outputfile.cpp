#include "outputfile.h"

#include "system/filesize.h"
#include "system/writing.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace engine {

namespace {

constexpr std::size_t bufferSize = std::size_t(1) << 16;
constexpr auto what = "the copy can't be written";

} // namespace

OutputFile::OutputFile(int file)
    : Pipeline("the copy", nullptr)
    , m_file(file)
{
    if (ftruncate(file, 0) != 0 || lseek(file, 0, SEEK_SET) != 0)
        failWriting(what);
}

void OutputFile::write(unsigned char const *data, size_t size)
{
    m_buffer.append(reinterpret_cast<const char *>(data), size);
    if (m_buffer.size() >= bufferSize)
        flush();
}

void OutputFile::flush()
{
    try {
        writeAll(m_file, m_buffer);
    } catch (const std::system_error &error) {
        if (m_error == 0)
            m_error = error.code().value();
    }
    if (m_error != 0)
        throw std::system_error(m_error, std::generic_category(), what);
    m_count += m_buffer.size();
    m_buffer.clear();
}

std::uintmax_t OutputFile::close()
{
    flush();
    if (sizeOf(m_file) != m_count)
        throw std::system_error(EIO, std::generic_category(), what);
    return m_count;
}

} // namespace engine
