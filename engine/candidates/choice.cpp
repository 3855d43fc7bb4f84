#include "choice.h"

#include <algorithm>

namespace engine {

namespace {

constexpr std::uintmax_t smallestTaken = 5001;
constexpr std::uintmax_t repairShare = 20;
constexpr std::uintmax_t repairRoom = 1024; // a table of objects, even in a small document

} // namespace

Choice choiceOf(const DraftFacts &facts)
{
    if (facts.asked)
        return Choice::Draft;
    const std::uintmax_t most =
        facts.repaired ? facts.original + std::max(facts.original / repairShare, repairRoom)
                       : facts.original;
    const bool pays = facts.repaired ? facts.draft <= most : facts.draft < most;
    return pays ? Choice::Draft : Choice::Original;
}

std::uintmax_t leastSizeFor(std::uintmax_t original)
{
    return original >= smallestTaken ? smallestTaken : 0;
}

} // namespace engine
