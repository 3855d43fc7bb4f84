#include "findings.h"

#include "lettercomparison.h"
#include "picturecomparison.h"
#include "placement.h"
#include "rewrittenpicture.h"
#include "textcomparison.h"

#include <charconv>
#include <sstream>
#include <stdexcept>

namespace engine {

namespace {

constexpr const char *unexplainedLine = "unexplained";

using Parts = std::vector<TouchedPart>;

Parts partsOn(int page, const Parts &parts)
{
    Parts here;
    for (const TouchedPart &part : parts) {
        if (part.page == page)
            here.push_back(part);
    }
    return here;
}

void blame(PartKind kind, const Parts &parts, Findings &findings)
{
    for (const TouchedPart &part : parts) {
        if (part.kind == kind)
            findings.failed.insert(part.object);
    }
}

// For a difference that is not in an image's place.
Findings blamed(const Parts &parts)
{
    Findings findings;
    blame(PartKind::Font, parts, findings);
    if (findings.failed.empty())
        blame(PartKind::Image, parts, findings);
    findings.unexplained = findings.failed.empty();
    return findings;
}

std::vector<PlacedImage> placesOf(const Parts &parts, const PageView &page, const Picture &picture)
{
    std::vector<PlacedImage> places;
    for (const TouchedPart &part : parts) {
        if (part.kind == PartKind::Image)
            places.push_back({part.object, placeOf(part, page, picture.width, picture.height)});
    }
    return places;
}

Findings blamedAll(const Parts &parts)
{
    Findings findings = blamed(parts);
    blame(PartKind::Image, parts, findings);
    return findings;
}

Findings compareRewritten(const Picture &copy, const Picture &original, const Parts &parts,
                          Likeness likeness)
{
    return showsTheSame(copy, original, likeness == Likeness::Rewritten) ? Findings()
                                                                         : blamedAll(parts);
}

Findings comparePage(const Picture &copy, const Picture &original, const PageView &page,
                     const Parts &parts)
{
    const PictureDifference difference =
        differenceOf(copy, original, placesOf(parts, page, original));
    Findings findings{.failed = difference.images, .unexplained = false};
    if (difference.elsewhere)
        findings.add(blamed(parts));
    return findings;
}

class DrawnFile
{
public:
    explicit DrawnFile(const DrawnPages &drawn)
        : m_drawn(drawn)
        , m_file(drawn.file)
    {
    }

    // Nothing if there is no picture of the page.
    std::optional<Picture> pictureOf(int page)
    {
        while (m_readable && m_next < m_drawn.pages.size()) {
            auto picture = next();
            if (m_drawn.pages[m_next++].page == page)
                return picture;
        }
        return {};
    }

private:
    // There is nothing to be read behind what is no picture.
    std::optional<Picture> next()
    {
        try {
            return m_file.next();
        } catch (const std::runtime_error &) {
            m_readable = false;
            return {};
        }
    }

    const DrawnPages &m_drawn;
    PictureFile m_file;
    std::size_t m_next = 0;
    bool m_readable = true;
};

bool readLine(const std::string &line, Findings &findings)
{
    if (line == unexplainedLine)
        return findings.unexplained = true;
    int object = 0;
    const char *end = line.data() + line.size();
    const auto [rest, error] = std::from_chars(line.data(), end, object);
    if (error != std::errc() || rest != end || object < 1)
        return false;
    return findings.failed.insert(object).second;
}

} // namespace

void Findings::add(const Findings &more)
{
    failed.insert(more.failed.begin(), more.failed.end());
    unexplained = unexplained || more.unexplained;
}

Findings compareTexts(int copy, int original, const std::vector<TouchedPart> &parts,
                      Likeness likeness)
{
    Findings findings;
    const auto pages = likeness == Likeness::Same ? pagesOfOtherText(copy, original)
                                                  : pagesOfOtherLetters(copy, original);
    for (const int page : pages)
        findings.add(blamed(partsOn(page, parts)));
    return findings;
}

Findings comparePictures(const DrawnPages &copy, const DrawnPages &original,
                         const std::vector<TouchedPart> &parts, Likeness likeness)
{
    DrawnFile copies(copy);
    DrawnFile originals(original);
    Findings findings;
    for (const PageView &page : copy.pages) {
        const Parts here = partsOn(page.page, parts);
        const auto one = copies.pictureOf(page.page);
        const auto other = originals.pictureOf(page.page);
        if (!one || !other)
            findings.add(blamedAll(here));
        else if (likeness == Likeness::Same)
            findings.add(comparePage(*one, *other, page, here));
        else
            findings.add(compareRewritten(*one, *other, here, likeness));
    }
    return findings;
}

std::string linesOf(const Findings &findings)
{
    std::string lines;
    if (findings.unexplained)
        lines += std::string(unexplainedLine) + '\n';
    for (const int object : findings.failed)
        lines += std::to_string(object) + '\n';
    return lines;
}

std::optional<Findings> findingsOf(const std::string &lines)
{
    if (!lines.empty() && lines.back() != '\n')
        return {};
    Findings findings;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        if (!readLine(line, findings))
            return {};
    }
    return findings;
}

} // namespace engine
