#include "contentnesting.h"

#include "contentrun.h"
#include "pdf/streams.h"

namespace engine {

namespace {

// Forms within forms; a stack overflow is nobody's drawing.
constexpr std::size_t deepest = 40;

// Bytes of content read in all, those that are read often included: seconds.
constexpr std::size_t mostContent = std::size_t(512) << 20;

// What it takes to begin with a content, in the bytes that could be read instead.
constexpr std::size_t costOfOne = 5000;

// Bytes of contents that are kept because they may be shown again.
constexpr std::size_t mostKept = std::size_t(32) << 20;

// Streams of a page are one content; what is divided between two of them is divided by a blank.
std::optional<std::string> pageContentOf(QPDFObjectHandle contents, std::size_t most)
{
    if (contents.isStream())
        return decodedBytesOf(contents, most);
    std::string bytes;
    if (!contents.isArray())
        return contents.isNull() ? std::optional(bytes) : std::nullopt;
    bool complete = true;
    for (auto &part : contents.getArrayAsVector()) {
        const auto decoded = part.isStream() && bytes.size() < most
                                 ? decodedBytesOf(part, most - bytes.size())
                                 : std::nullopt;
        complete = complete && decoded;
        bytes += decoded.value_or("") + "\n";
    }
    return complete ? std::optional(bytes) : std::nullopt;
}

} // namespace

ContentNesting::ContentNesting(ContentVisitor &visitor, const Layers &layers)
    : m_visitor(visitor)
    , m_layers(layers)
    , m_budget(mostContent)
{
}

void ContentNesting::enterPage(const Box &crop)
{
    m_crop = crop;
    m_shown.clear();
    m_imageless.clear();
}

bool ContentNesting::spend(std::size_t bytes)
{
    const bool enough = m_budget >= bytes + costOfOne;
    m_budget = enough ? m_budget - bytes - costOfOne : 0;
    return enough;
}

void ContentNesting::showPage(QPDFObjectHandle page, ContentScope &scope, const ContentStart &start)
{
    const auto bytes = pageContentOf(page.getKey("/Contents"), std::min(m_budget, mostBytes));
    if (bytes && spend(bytes->size()))
        run(page, *bytes, scope, start);
    else
        m_visitor.unclear(start.shown, page);
}

// Tells whether it was shown so before. Where there is no image in it, the place doesn't matter.
bool ContentNesting::isDone(const Way &way, const Matrix &matrix)
{
    const Place place(matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f);
    return m_imageless.count(way) > 0 || !m_shown[way].insert(place).second;
}

ContentNesting::Bytes ContentNesting::bytesOf(QPDFObjectHandle stream)
{
    const auto known = m_bytes.find(stream.getObjGen());
    if (known != m_bytes.end())
        return known->second;
    auto decoded = decodedBytesOf(stream, std::min(m_budget, mostBytes));
    auto bytes = decoded ? std::make_shared<const std::string>(std::move(*decoded)) : nullptr;
    const std::size_t size = bytes ? bytes->size() : 0;
    if (m_kept + size > mostKept)
        return bytes;
    m_kept += size;
    m_bytes.emplace(stream.getObjGen(), bytes);
    return bytes;
}

void ContentNesting::show(QPDFObjectHandle stream, QPDFObjectHandle resources,
                          const ContentStart &start, ContentScope &scope)
{
    if (!stream.isStream() || !isFinite(start.matrix) || m_active.count(stream.getObjGen()) > 0)
        return;
    const Way way(stream.getObjGen(), scope.owner(), start.font.getObjGen(), start.shown.drawn,
                  start.shown.placed);
    if (isDone(way, start.matrix))
        return;
    const Bytes bytes = m_active.size() < deepest ? bytesOf(stream) : nullptr;
    if (!bytes || !spend(bytes->size()))
        return m_visitor.unclear(start.shown, stream);

    const std::size_t images = m_images;
    m_active.insert(stream.getObjGen());
    ContentScope own(resources, stream.getObjGen(), &scope);
    run(stream, *bytes, resources.isDictionary() ? own : scope, start);
    m_active.erase(stream.getObjGen());
    if (m_images == images)
        m_imageless.insert(way);
}

void ContentNesting::run(QPDFObjectHandle content, const std::string &bytes, ContentScope &scope,
                         const ContentStart &start)
{
    if (!ContentRun(*this, scope, start).read(bytes))
        m_visitor.unclear(start.shown, content);
}

void ContentNesting::showImage(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix)
{
    ++m_images;
    Shown here = shown;
    if (shown.placed && isFinite(matrix) && !overlap(boundsOf({0, 0, 1, 1}, matrix), m_crop))
        here.drawn = false;
    m_visitor.image(here, image, matrix);
}

} // namespace engine
