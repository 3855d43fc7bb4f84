#include "drawingplan.h"

#include "picture.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

constexpr double pointsPerInch = 72;
constexpr double mostPixels = 4'000'000; // of a page
constexpr double mostBytesOfDrawing = 96 << 20;
constexpr std::size_t leastPages = 2; // of a process, which first has to look for fonts

double pixelsOf(const PageView &view, double resolution)
{
    const double width = std::ceil((view.crop.right - view.crop.left) * resolution / pointsPerInch);
    const double height =
        std::ceil((view.crop.top - view.crop.bottom) * resolution / pointsPerInch);
    return width * height;
}

double bytesOf(const PageView &view, double resolution)
{
    return pixelsOf(view, resolution) * Picture::channels;
}

double resolutionFor(const PageView &view, double resolution)
{
    const double pixels = pixelsOf(view, resolution);
    return pixels > mostPixels ? resolution * std::sqrt(mostPixels / pixels) : resolution;
}

class Plan
{
public:
    Plan(const std::vector<PageView> &views, double resolution, std::size_t mostPages)
        : m_views(views)
        , m_resolution(resolution)
        , m_mostPages(mostPages)
    {
    }

    void add(int page)
    {
        const PageView &view = m_views.at(std::size_t(page));
        const double resolution = resolutionFor(view, m_resolution);
        if (!fits(view, resolution)) {
            m_drawings.push_back({.resolution = resolution, .pages = {}});
            m_bytes = 0;
        } else {
            addGap(page);
        }
        append(view);
    }

    std::vector<Drawing> take() { return std::move(m_drawings); }

private:
    [[nodiscard]] bool fits(const PageView &view, double resolution) const
    {
        if (m_drawings.empty())
            return false;
        const Drawing &last = m_drawings.back();
        return last.resolution == resolution && resolution == m_resolution &&
               last.pages.size() < m_mostPages && isNear(view.page) &&
               m_bytes + bytesOf(view, resolution) <= mostBytesOfDrawing;
    }

    // To draw one page more takes less than to start one process more.
    [[nodiscard]] bool isNear(int page) const
    {
        const int last = m_drawings.back().pages.back().page;
        return page == last + 1 ||
               (page == last + 2 &&
                resolutionFor(m_views.at(std::size_t(last) + 1), m_resolution) == m_resolution);
    }

    void addGap(int page)
    {
        for (int between = m_drawings.back().pages.back().page + 1; between < page; ++between)
            append(m_views.at(std::size_t(between)));
    }

    void append(const PageView &view)
    {
        m_drawings.back().pages.push_back(view);
        m_bytes += bytesOf(view, m_drawings.back().resolution);
    }

    const std::vector<PageView> &m_views;
    double m_resolution;
    std::size_t m_mostPages;
    double m_bytes = 0;
    std::vector<Drawing> m_drawings;
};

} // namespace

// A reader that doesn't know of units draws what has one smaller, and one that takes no box for
// right draws a sheet of paper.
std::uintmax_t Drawing::mostBytes() const
{
    double bytes = 0;
    for (const PageView &page : pages)
        bytes +=
            std::max(bytesOf(page, resolution), bytesOf({0, {0, 0, 1000, 1000}, 0}, resolution));
    return std::uintmax_t(bytes) + (std::uintmax_t(1) << 20);
}

double comparisonResolution(double lowestAsked)
{
    constexpr double highest = 50;
    return lowestAsked > 0 ? std::clamp(lowestAsked / 3, 18.0, highest) : highest;
}

std::vector<Drawing> drawingPlan(const std::set<int> &pages, const std::vector<PageView> &views,
                                 double resolution, int processes)
{
    const auto share = (pages.size() + std::size_t(processes) - 1) / std::size_t(processes);
    Plan plan(views, resolution, std::max(share, leastPages));
    for (const int page : pages)
        plan.add(page);
    return plan.take();
}

} // namespace engine
