#include "textpages.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <unistd.h>

namespace engine {

namespace {

constexpr char pageEnd = '\f';

} // namespace

std::optional<std::string> TextPages::next()
{
    std::string page;
    while (!m_unread.empty() || read()) {
        const std::size_t end = std::min(m_unread.find(pageEnd), m_unread.size() - 1) + 1;
        page += m_unread.substr(0, end);
        m_unread.remove_prefix(end);
        if (page.back() == pageEnd)
            break;
    }
    return page.empty() ? std::nullopt : std::optional(page);
}

bool TextPages::read()
{
    ssize_t count = 0;
    do
        count = pread(m_file, m_bytes, sizeof m_bytes, m_offset);
    while (count < 0 && errno == EINTR);
    if (count < 0)
        throw std::runtime_error("no text of a document");
    m_unread = {m_bytes, std::size_t(count)};
    m_offset += off_t(count);
    return count > 0;
}

} // namespace engine
