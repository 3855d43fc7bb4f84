#include "objectstreams.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace engine {

namespace {

// All that build on PDF 1.3 or 1.4.
constexpr const char *oldStandards[] = {"PDF/A-1", "PDF/X-1", "PDF/X-2", "PDF/X-3"};

bool isOld(const std::string &standard)
{
    return std::any_of(std::begin(oldStandards), std::end(oldStandards),
                       [&](const char *old) { return standard.rfind(old, 0) == 0; });
}

// "1.10" would come after "1.7"; what is no version is as good as the first.
std::pair<int, int> numbersOf(const std::string &version)
{
    std::pair<int, int> numbers = {0, 0};
    int *number = &numbers.first;
    for (const char letter : version) {
        if (letter == '.' && number == &numbers.first)
            number = &numbers.second;
        else if (letter >= '0' && letter <= '9' && *number < 1000)
            *number = *number * 10 + (letter - '0');
        else
            return {0, 0};
    }
    return numbers;
}

} // namespace

bool mayHaveObjectStreams(const ObjectStreamFacts &facts)
{
    if (facts.standard && isOld(*facts.standard))
        return false;
    return facts.present || numbersOf(facts.version) >= std::pair(1, 5);
}

} // namespace engine
