#include "touched.h"

#include "system/lines.h"

#include <cmath>
#include <cstdio>

namespace engine {

namespace {

std::string lineOf(const TouchedPart &part)
{
    char line[512];
    const int size = std::snprintf(line, sizeof line, "%s %d %d %.9g %.9g %.9g %.9g\n",
                                   part.kind == PartKind::Image ? "image" : "font", part.object,
                                   part.page, part.left, part.bottom, part.right, part.top);
    return {line, std::size_t(size)};
}

bool isSensible(const TouchedPart &part)
{
    return part.object > 0 && part.page >= 0 && std::isfinite(part.left) &&
           std::isfinite(part.bottom) && std::isfinite(part.right) && std::isfinite(part.top);
}

// Held against its own writing, which only one spelling passes: sscanf says nothing of numbers that
// are too large.
std::optional<TouchedPart> partOf(const std::string &line)
{
    TouchedPart part;
    char kind[8] = {};
    if (std::sscanf(line.c_str(), "%7[a-z] %d %d %lf %lf %lf %lf", kind, &part.object, &part.page,
                    &part.left, &part.bottom, &part.right, &part.top) != 7)
        return {};
    part.kind = kind == std::string("image") ? PartKind::Image : PartKind::Font;
    if (!isSensible(part) || lineOf(part) != line + '\n')
        return {};
    return part;
}

} // namespace

TouchedPart wholePage(PartKind kind, int object, const PageView &view)
{
    return {kind,         object, view.page, view.crop.left, view.crop.bottom, view.crop.right,
            view.crop.top};
}

std::string linesOf(const std::vector<TouchedPart> &parts)
{
    std::string lines;
    for (const TouchedPart &part : parts)
        lines += lineOf(part);
    return lines;
}

std::optional<std::vector<TouchedPart>> partsOf(const std::string &lines)
{
    return readLines(lines, partOf);
}

} // namespace engine
