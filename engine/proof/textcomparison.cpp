#include "textcomparison.h"

#include <cerrno>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>

namespace engine {

namespace {

constexpr char pageEnd = '\f';

class TextFile
{
public:
    explicit TextFile(int file)
        : m_file(file)
    {
    }

    // With its form feed, but for what follows the last one. Nothing at the end.
    std::optional<std::string> nextPage()
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

private:
    bool read()
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

    int m_file;
    off_t m_offset = 0;
    char m_bytes[1 << 16] = {};
    std::string_view m_unread;
};

} // namespace

std::vector<int> pagesOfOtherText(int copy, int original)
{
    TextFile one(copy);
    TextFile other(original);
    std::vector<int> pages;
    for (int page = 0;; ++page) {
        const auto copied = one.nextPage();
        const auto meant = other.nextPage();
        if (!copied && !meant)
            return pages;
        if (copied != meant)
            pages.push_back(page);
    }
}

int countPages(int text)
{
    TextFile file(text);
    int pages = 0;
    for (auto page = file.nextPage(); page; page = file.nextPage())
        pages += page->back() == pageEnd ? 1 : 0;
    return pages;
}

} // namespace engine
