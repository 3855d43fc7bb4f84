#include "textcomparison.h"

#include "textpages.h"

namespace engine {

std::vector<int> pagesOfOtherText(int copy, int original)
{
    TextPages one(copy);
    TextPages other(original);
    std::vector<int> pages;
    for (int page = 0;; ++page) {
        const auto copied = one.next();
        const auto meant = other.next();
        if (!copied && !meant)
            return pages;
        if (copied != meant)
            pages.push_back(page);
    }
}

int countPages(int text)
{
    TextPages file(text);
    int pages = 0;
    for (auto page = file.next(); page; page = file.next())
        pages += page->back() == '\f' ? 1 : 0;
    return pages;
}

} // namespace engine
