#include "run.h"

#include "system/failure.h"
#include "system/filesize.h"
#include "system/wholefile.h"

namespace engine {

namespace {

// A mark has a few lines.
constexpr std::uintmax_t mostOfMark = std::uintmax_t(1) << 20;

} // namespace

std::string markText(const Run &run)
{
    if (run.mark < 0)
        return {};
    if (sizeOf(run.mark) > mostOfMark)
        throw Failure(run.request.mark + ": too long for a document information mark");
    return contentOf(run.mark);
}

} // namespace engine
