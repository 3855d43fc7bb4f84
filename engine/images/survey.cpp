#include "survey.h"

#include "content/contentwalk.h"
#include "pdf/walk.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <set>

namespace engine {

namespace {

// In points. Ghostscript 10.00 made 600 by 600 pixels one on a page of half a point.
constexpr double smallestEdge = 3;
constexpr double largestEdge = 14'400;

// Of one image on one page; of more what bounds them all.
constexpr std::size_t mostParts = 16;

struct Uses
{
    double dpi = 0;
    double edge = 0; ///< the shorter one, where it is longest
    bool unclear = false;
    bool asImage = false;
    bool asSoftMask = false;
    std::vector<TouchedPart> parts;
};

bool isImage(QPDFObjectHandle object)
{
    return object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image");
}

void widen(TouchedPart &part, const TouchedPart &other)
{
    part.left = std::min(part.left, other.left);
    part.bottom = std::min(part.bottom, other.bottom);
    part.right = std::max(part.right, other.right);
    part.top = std::max(part.top, other.top);
}

bool isSame(const TouchedPart &one, const TouchedPart &other)
{
    return one.left == other.left && one.bottom == other.bottom && one.right == other.right &&
           one.top == other.top;
}

void addPart(std::vector<TouchedPart> &parts, const TouchedPart &part)
{
    std::size_t onPage = 0;
    for (auto known = parts.rbegin(); known != parts.rend() && known->page == part.page; ++known) {
        if (isSame(*known, part))
            return;
        if (++onPage == mostParts)
            return widen(*known, part);
    }
    parts.push_back(part);
}

class Surveyor : public ContentVisitor
{
public:
    explicit Surveyor(QPDF &document)
    {
        for (const auto &page : document.getAllPages())
            m_pages.push_back(boxOf(page));
        walkContent(document, *this);
    }

    void image(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix) override
    {
        note(shown, image, matrix).asImage = true;
        QPDFObjectHandle softMask = image.getDict().getKey("/SMask");
        QPDFObjectHandle mask = image.getDict().getKey("/Mask");
        if (softMask.isStream())
            note(shown, softMask, matrix).asSoftMask = true;
        if (mask.isStream())
            note(shown, mask, matrix).asImage = true;
    }

    void unclear(const Shown &, QPDFObjectHandle content) override
    {
        QPDFObjectHandle resources =
            content.isStream() ? content.getDict().getKey("/Resources")
                               : QPDFPageObjectHelper(content).getAttribute("/Resources", false);
        std::vector<QPDFObjectHandle> waiting = {resources};
        while (!waiting.empty()) {
            const QPDFObjectHandle object = waiting.back();
            waiting.pop_back();
            if (!object.isIndirect() || m_unclear.insert(object.getObjGen()).second)
                doubt(object, waiting);
        }
    }

    std::map<QPDFObjGen, Uses> uses;

private:
    static Box boxOf(QPDFObjectHandle page)
    {
        QPDFObjectHandle array = QPDFPageObjectHelper(page).getAttribute("/MediaBox", false);
        QPDFObjectHandle unit = page.getKey("/UserUnit");
        const double scale =
            unit.isNumber() && unit.getNumericValue() > 0 ? unit.getNumericValue() : 1;
        if (!array.isRectangle())
            return {0, 0, 612 * scale, 792 * scale};
        const auto box = array.getArrayAsRectangle();
        return {box.llx * scale, box.lly * scale, box.urx * scale, box.ury * scale};
    }

    // Everything that the object leads to.
    void doubt(QPDFObjectHandle object, std::vector<QPDFObjectHandle> &waiting)
    {
        if (isImage(object))
            uses[object.getObjGen()].unclear = true;
        QPDFObjectHandle dictionary = object.isStream() ? object.getDict() : object;
        if (object.isArray()) {
            for (const auto &item : object.getArrayAsVector())
                waiting.push_back(item);
        } else if (dictionary.isDictionary()) {
            for (const auto &[key, value] : dictionary.getDictAsMap()) {
                if (key != "/Parent" && key != "/P")
                    waiting.push_back(value);
            }
        }
    }

    Uses &note(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix)
    {
        Uses &use = uses[image.getObjGen()];
        const double across = std::hypot(matrix.a, matrix.b);
        const double up = std::hypot(matrix.c, matrix.d);
        use.unclear = use.unclear || shown.page < 0 || !isFinite(matrix);
        use.edge = std::max(use.edge, std::min(across, up));
        const double dpi = dpiOf(image.getDict(), across, up);
        if (dpi > 0)
            use.dpi = use.dpi > 0 ? std::min(use.dpi, dpi) : dpi;
        if (shown.drawn && shown.page >= 0)
            addPart(use.parts, partOf(shown, image, matrix));
        return use;
    }

    static double dpiOf(QPDFObjectHandle dictionary, double across, double up)
    {
        QPDFObjectHandle width = dictionary.getKey("/Width");
        QPDFObjectHandle height = dictionary.getKey("/Height");
        if (!width.isInteger() || !height.isInteger() || across <= 0 || up <= 0)
            return 0;
        return 72 *
               std::min(double(width.getIntValue()) / across, double(height.getIntValue()) / up);
    }

    [[nodiscard]] TouchedPart partOf(const Shown &shown, const QPDFObjectHandle &image,
                                     const Matrix &matrix) const
    {
        const Box box =
            shown.placed ? boundsOf({0, 0, 1, 1}, matrix) : m_pages[std::size_t(shown.page)];
        return {PartKind::Image, image.getObjectID(), shown.page, box.left,
                box.bottom,      box.right,           box.top};
    }

    std::vector<Box> m_pages;
    std::set<QPDFObjGen> m_unclear;
};

LeftAlone reasonOf(const SurveyedImage &image, const Uses &use)
{
    if (use.unclear)
        return LeftAlone::Unclear;
    if (use.asImage && use.asSoftMask)
        return LeftAlone::OfTwoKinds;
    if (image.facts.reason != LeftAlone::No)
        return image.facts.reason;
    if (use.parts.empty())
        return LeftAlone::NotShown;
    if (use.edge < smallestEdge || std::min(image.pageWidth(), image.pageHeight()) < smallestEdge)
        return LeftAlone::ShownSmall;
    return std::max(image.pageWidth(), image.pageHeight()) > largestEdge ? LeftAlone::ShownLarge
                                                                         : LeftAlone::No;
}

SurveyedImage surveyed(QPDFObjectHandle image, std::map<QPDFObjGen, Uses> &uses)
{
    SurveyedImage result;
    result.object = image.getObjectID();
    const auto found = uses.find(image.getObjGen());
    if (found == uses.end()) {
        result.facts.reason = LeftAlone::NotFound;
        return result;
    }
    result.facts = factsOf(image, found->second.asSoftMask);
    result.dpi = found->second.dpi;
    result.facts.reason = reasonOf(result, found->second);
    result.parts = std::move(found->second.parts);
    return result;
}

} // namespace

std::vector<SurveyedImage> surveyImages(QPDF &document)
{
    Surveyor surveyor(document);
    std::map<int, SurveyedImage> images;
    for (const auto &object : reachableObjects(document)) {
        if (isImage(object))
            images.emplace(object.getObjectID(), surveyed(object, surveyor.uses));
    }
    std::vector<SurveyedImage> result;
    result.reserve(images.size());
    for (auto &[number, image] : images)
        result.push_back(std::move(image));
    return result;
}

} // namespace engine
