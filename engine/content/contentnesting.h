#pragma once

#include "contentscope.h"
#include "contentwalk.h"
#include "layers.h"

#include <memory>
#include <optional>
#include <set>
#include <tuple>

namespace engine {

/// What a content takes over from the one that shows it.
struct ContentStart
{
    Shown shown;
    Matrix matrix;
    QPDFObjectHandle font = QPDFObjectHandle::newNull();
    double fontSize = 0;
    double fontScaling = 1;
};

/// Contents that show others. Keeps them from showing themselves, and their number bounded.
class ContentNesting
{
public:
    ContentNesting(ContentVisitor &visitor, const Layers &layers);

    /// What was shown on another page is shown anew on this one, whose crop box is in points.
    void enterPage(const Box &crop);

    void showPage(QPDFObjectHandle page, ContentScope &scope, const ContentStart &start);

    /// A form, or what is told like one: a pattern, a glyph, an appearance. A content without
    /// resources of its own uses the scope's.
    void show(QPDFObjectHandle stream, QPDFObjectHandle resources, const ContentStart &start,
              ContentScope &scope);

    void showImage(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix);

    [[nodiscard]] const Layers &layers() const { return m_layers; }
    ContentVisitor &visitor() { return m_visitor; }

private:
    using Way = std::tuple<QPDFObjGen, QPDFObjGen, QPDFObjGen, bool, bool>;
    using Place = std::tuple<double, double, double, double, double, double>;
    using Bytes = std::shared_ptr<const std::string>;

    bool isDone(const Way &way, const Matrix &matrix);
    Bytes bytesOf(QPDFObjectHandle stream);
    bool spend(std::size_t bytes);
    void run(QPDFObjectHandle content, const std::string &bytes, ContentScope &scope,
             const ContentStart &start);

    ContentVisitor &m_visitor;
    const Layers &m_layers;
    Box m_crop;
    std::size_t m_budget;
    std::size_t m_images = 0; ///< shown so far
    std::set<QPDFObjGen> m_active;
    std::map<Way, std::set<Place>> m_shown; ///< on this page
    std::set<Way> m_imageless;              ///< shown already, and their place doesn't matter
    std::map<QPDFObjGen, Bytes> m_bytes;
    std::size_t m_kept = 0; ///< bytes of them
};

} // namespace engine
