#include "lettercomparison.h"

#include "textpages.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>

namespace engine {

namespace {

constexpr long long share = 100; // one letter in so many may differ

// Dashes, quotation marks and the like are what a rewriting loses here and there; a line that is
// missing has plain letters, too.
constexpr long long mostOnPage = 8;
constexpr long long mostPlainOnPage = 8;

bool startsLetter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0) != 0x80;
}

// Blanks of all widths, and marks of direction, which a reader puts in as it likes.
bool isBlank(const std::string &letter)
{
    if (letter.size() == 1)
        return letter[0] >= 0 && letter[0] <= ' ';
    return letter == "\xC2\xA0" || letter == "\xE3\x80\x80" || letter == "\xEF\xBB\xBF" ||
           (letter >= "\xE2\x80\x80" && letter <= "\xE2\x80\x8F") ||
           (letter >= "\xE2\x80\xA8" && letter <= "\xE2\x80\xAF") ||
           (letter >= "\xE2\x81\x9F" && letter <= "\xE2\x81\xAF");
}

// A letter or digit that no encoding has anywhere else.
bool isPlain(const std::string &letter)
{
    const auto isIn = [&](char first, char last) {
        return letter[0] >= first && letter[0] <= last;
    };
    return letter.size() == 1 && (isIn('a', 'z') || isIn('A', 'Z') || isIn('0', '9'));
}

struct LetterCounts
{
    std::map<std::string, long long> more; ///< in the copy than in the original
    long long meant = 0;                   ///< in the original

    void add(const std::string &text, int sign)
    {
        for (std::size_t begin = 0; begin < text.size();) {
            std::size_t end = begin + 1;
            while (end < text.size() && !startsLetter(text[end]))
                ++end;
            const std::string letter = text.substr(begin, end - begin);
            begin = end;
            if (isBlank(letter))
                continue;
            more[letter] += sign;
            meant += sign < 0 ? 1 : 0;
        }
    }

    [[nodiscard]] long long different(bool onlyPlain) const
    {
        long long count = 0;
        for (const auto &[letter, number] : more)
            count += isPlain(letter) || !onlyPlain ? std::abs(number) : 0;
        return count;
    }
};

struct PageDifference
{
    int page;
    long long letters; ///< missing or added
    bool isTooMuch;
};

PageDifference differenceOn(int page, const std::optional<std::string> &copied,
                            const std::optional<std::string> &meant)
{
    LetterCounts counts;
    counts.add(copied.value_or(""), 1);
    counts.add(meant.value_or(""), -1);
    const long long different = counts.different(false);
    const bool isTooMuch = !copied || !meant || counts.different(true) > mostPlainOnPage ||
                           different > std::max(mostOnPage, counts.meant / share);
    return {page, different, isTooMuch};
}

long long lettersIn(const std::string &text)
{
    LetterCounts counts;
    counts.add(text, -1);
    return counts.meant;
}

} // namespace

std::vector<int> pagesOfOtherLetters(int copy, int original)
{
    TextPages one(copy);
    TextPages other(original);
    std::vector<PageDifference> differences;
    long long letters = 0;
    long long different = 0;
    auto copied = one.next();
    auto meant = other.next();
    for (int page = 0; copied || meant; ++page, copied = one.next(), meant = other.next()) {
        if (meant)
            letters += lettersIn(*meant);
        if (copied == meant)
            continue;
        differences.push_back(differenceOn(page, copied, meant));
        different += differences.back().letters;
    }
    std::vector<int> pages;
    for (const PageDifference &difference : differences) {
        if (difference.isTooMuch || (difference.letters > 0 && different > letters / share))
            pages.push_back(difference.page);
    }
    return pages;
}

} // namespace engine
