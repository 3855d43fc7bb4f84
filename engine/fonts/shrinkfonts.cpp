#include "shrinkfonts.h"

#include "descriptors.h"
#include "fieldfonts.h"
#include "fontprograms/subset.h"
#include "fontprograms/unusedtables.h"
#include "formats/deflate.h"
#include "lossless/claim.h"
#include "pdf/pageboxes.h"
#include "pdf/streams.h"
#include "shownglyphs.h"
#include "standard14.h"
#include "system/progress.h"

#include <algorithm>

namespace engine {

namespace {

bool isSubsettable(const EmbeddedProgram &embedded)
{
    return embedded.isAccountedFor && embedded.key != "/FontFile";
}

// A reader may take letters from the program's own lookups where the document has none of its own.
// The glyphs of a CFF in simple fonts are known by their names alone.
Needs needsOf(const EmbeddedProgram &embedded, const FontProgram &program)
{
    Needs needs{false, false, !program.isBareCff()};
    for (ProgramUser user : embedded.users) {
        needs.numbers = needs.numbers || user.isComposite();
        needs.names = needs.names || !user.isComposite();
        needs.cmap =
            needs.cmap || !user.isComposite() || !user.font.getKey("/ToUnicode").isStream();
    }
    return needs;
}

Glyphs renumbered(const std::map<Glyph, Glyph> &numbers)
{
    Glyphs glyphs;
    for (const auto &[before, after] : numbers)
        glyphs.insert(after);
    return glyphs;
}

// Nothing unless all that is shown comes out of the subset by the same ways.
std::optional<Subset> subsetFor(const EmbeddedProgram &embedded, const std::string &bytes,
                                const FontUses &uses)
{
    const auto program = FontProgram::of(bytes);
    const auto glyphs = program ? shownGlyphs(embedded, *program, uses) : std::nullopt;
    auto subset = glyphs ? subsetOf(bytes, *glyphs, needsOf(embedded, *program)) : std::nullopt;
    const auto again = subset ? FontProgram::of(subset->bytes) : std::nullopt;
    if (!again || shownGlyphs(embedded, *again, uses) != renumbered(subset->numbers))
        return std::nullopt;
    return subset;
}

void setProgram(EmbeddedProgram embedded, const std::string &bytes, bool compress)
{
    const QPDFObjectHandle flate = QPDFObjectHandle::newName("/FlateDecode");
    QPDFObjectHandle none = QPDFObjectHandle::newNull();
    // As all streams it is packed once more, thoroughly, when no more changes.
    if (compress)
        embedded.stream.replaceStreamData(quicklyDeflated(bytes), flate, none);
    else
        embedded.stream.replaceStreamData(bytes, none, none);
    if (embedded.stream.getDict().hasKey("/Length1"))
        embedded.stream.getDict().replaceKey(
            "/Length1", QPDFObjectHandle::newInteger(static_cast<long long>(bytes.size())));
}

class Shrinking
{
public:
    Shrinking(QPDF &document, const FontOptions &options, const std::set<int> &excluded)
        : m_document(document)
        , m_options(options)
        , m_excluded(excluded)
    {
        // All standards ask for the programs.
        m_options.leaveOutStandard14 = options.leaveOutStandard14 && !claimedStandard(document);
        walkContent(document, m_uses);
    }

    FontResult run()
    {
        m_fieldFonts = fontsOfFields(m_document);
        for (const EmbeddedProgram &embedded : embeddedPrograms(m_document)) {
            if (!isExcluded(embedded))
                shrink(embedded);
            if (!m_options.compress)
                unpack(embedded);
            reportProgress();
        }
        return std::move(m_result);
    }

private:
    bool isExcluded(const EmbeddedProgram &embedded) const
    {
        return m_excluded.count(embedded.stream.getObjectID()) != 0;
    }

    bool isForFields(const EmbeddedProgram &embedded) const
    {
        return std::any_of(embedded.users.begin(), embedded.users.end(), [&](ProgramUser user) {
            return m_fieldFonts.count(identityOf(user.font)) != 0;
        });
    }

    void shrink(const EmbeddedProgram &embedded)
    {
        const bool isCertain = m_uses.areComplete() && !isForFields(embedded);
        if (isCertain && m_options.leaveOutStandard14 && canBeLeftOut(embedded, m_uses)) {
            leaveOut(embedded);
            note(embedded, m_result.leftOut);
        } else if (m_options.subset && isSubsettable(embedded)) {
            if (!isCertain || !takeSubset(embedded))
                dropTables(embedded);
        }
    }

    bool takeSubset(const EmbeddedProgram &embedded)
    {
        const auto bytes = decodedBytesOf(embedded.stream);
        const auto subset = bytes ? subsetFor(embedded, *bytes, m_uses) : std::nullopt;
        if (!subset || !isWorthIt(*bytes, subset->bytes))
            return false;
        setProgram(embedded, subset->bytes, m_options.compress);
        setTag(embedded, tagOf(subset->bytes));
        listGlyphs(m_document, embedded, *FontProgram::of(subset->bytes),
                   renumbered(subset->numbers));
        note(embedded, m_result.touched);
        return true;
    }

    void dropTables(const EmbeddedProgram &embedded)
    {
        const auto bytes = decodedBytesOf(embedded.stream);
        const auto text = isForFields(embedded) ? TextToCome::OfFields : TextToCome::None;
        const auto less = bytes ? withoutUnusedTables(*bytes, text) : std::nullopt;
        if (!less || !isWorthIt(*bytes, *less))
            return;
        setProgram(embedded, *less, m_options.compress);
        note(embedded, m_result.touched);
    }

    // Each page that shows a program has to be drawn to be believed, which a few bytes are not
    // worth.
    static bool isWorthIt(const std::string &program, const std::string &subset)
    {
        constexpr std::size_t leastPart = 20;
        const std::size_t before = quicklyDeflated(program).size();
        const std::size_t after = quicklyDeflated(subset).size();
        return after + before / leastPart < before;
    }

    void unpack(EmbeddedProgram embedded)
    {
        if (embedded.stream.getDict().getKey("/Filter").isNull())
            return;
        if (const auto bytes = decodedBytesOf(embedded.stream))
            setProgram(embedded, *bytes, false);
    }

    void note(const EmbeddedProgram &embedded, std::vector<TouchedPart> &parts)
    {
        std::set<int> pages;
        for (const ProgramUser &user : embedded.users)
            pages.merge(m_uses.of(user.font).pages);
        for (const int page : pages) {
            const Box &box = m_views.at(std::size_t(page)).crop;
            parts.push_back({PartKind::Font, embedded.stream.getObjectID(), page, box.left,
                             box.bottom, box.right, box.top});
        }
    }

    QPDF &m_document;
    FontOptions m_options;
    const std::set<int> &m_excluded;
    FontUses m_uses;
    std::set<std::string> m_fieldFonts;
    std::vector<PageView> m_views = pageViewsOf(m_document);
    FontResult m_result;
};

} // namespace

FontResult shrinkFonts(QPDF &document, const FontOptions &options, const std::set<int> &excluded)
{
    return Shrinking(document, options, excluded).run();
}

} // namespace engine
