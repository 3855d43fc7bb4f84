#include "pageview.h"

#include "system/lines.h"

#include <cmath>
#include <cstdio>

namespace engine {

namespace {

std::string lineOf(const PageView &view)
{
    char line[512];
    const int size = std::snprintf(line, sizeof line, "page %d %d %.9g %.9g %.9g %.9g\n", view.page,
                                   view.rotation, view.crop.left, view.crop.bottom, view.crop.right,
                                   view.crop.top);
    return {line, std::size_t(size)};
}

bool isSensible(const PageView &view)
{
    const bool isTurned =
        view.rotation == 0 || view.rotation == 90 || view.rotation == 180 || view.rotation == 270;
    return view.page >= 0 && isTurned && std::isfinite(view.crop.left) &&
           std::isfinite(view.crop.bottom) && std::isfinite(view.crop.right) &&
           std::isfinite(view.crop.top);
}

std::optional<PageView> viewOf(const std::string &line)
{
    PageView view;
    const int read =
        std::sscanf(line.c_str(), "page %d %d %lf %lf %lf %lf", &view.page, &view.rotation,
                    &view.crop.left, &view.crop.bottom, &view.crop.right, &view.crop.top);
    if (read != 6 || !isSensible(view) || lineOf(view) != line + '\n')
        return {};
    return view;
}

} // namespace

std::string linesOf(const std::vector<PageView> &views)
{
    std::string lines;
    for (const PageView &view : views)
        lines += lineOf(view);
    return lines;
}

std::optional<std::vector<PageView>> viewsOf(const std::string &lines)
{
    return readLines(lines, viewOf);
}

} // namespace engine
