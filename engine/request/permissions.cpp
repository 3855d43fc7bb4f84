#include "permissions.h"

namespace engine {

namespace {

struct Split
{
    int permission;
    int otherHalf;
};

constexpr int bit(int position)
{
    return 1 << (position - 1);
}

constexpr Split splits[] = {
    {bit(3), bit(12)}, // printing, and printing in high quality
    {bit(4), bit(11)}, // changing, and assembling
    {bit(6), bit(9)},  // commenting, and filling in forms
};

} // namespace

int revision3Permissions(int revision2)
{
    int permissions = revision2;
    for (const Split &split : splits) {
        if ((permissions & split.permission) == 0)
            permissions &= ~split.otherHalf;
    }
    return permissions;
}

} // namespace engine
