#include "viewing.h"

#include "pdf/foreign.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

bool isText(Object value)
{
    return value.isString();
}

// Those that every PDF version knows; others name parts that the copy may not have.
bool isLayout(Object value)
{
    return value.isName();
}

bool isMode(Object value)
{
    const auto modes = {"/UseNone", "/UseOutlines", "/UseThumbs", "/FullScreen"};
    return std::any_of(modes.begin(), modes.end(),
                       [&](const char *mode) { return value.isNameAndEquals(mode); });
}

bool isPreferences(Object value)
{
    return value.isDictionary();
}

struct Entry
{
    const char *key;
    bool (*fits)(Object value);
};

constexpr Entry entries[] = {
    {"/Lang", isText},
    {"/PageLayout", isLayout},
    {"/PageMode", isMode},
    {"/ViewerPreferences", isPreferences},
};

} // namespace

void restoreViewing(QPDF &copy, QPDF &original)
{
    for (const Entry &entry : entries) {
        Object value = original.getRoot().getKey(entry.key);
        if (entry.fits(value))
            copy.getRoot().replaceKey(entry.key, broughtInto(copy, value));
    }
}

} // namespace engine
