#include "choice.h"

namespace engine {

namespace {

constexpr std::uintmax_t smallestTaken = 5001;
constexpr std::uintmax_t repairShare = 20;

} // namespace

Choice choiceOf(const DraftFacts &facts)
{
    if (facts.asked)
        return Choice::Draft;
    const std::uintmax_t most =
        facts.repaired ? facts.original + facts.original / repairShare : facts.original;
    const bool pays = facts.repaired ? facts.draft <= most : facts.draft < most;
    return pays ? Choice::Draft : Choice::Original;
}

std::uintmax_t leastSizeFor(std::uintmax_t original)
{
    return original >= smallestTaken ? smallestTaken : 0;
}

} // namespace engine
