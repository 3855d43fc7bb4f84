#include "simplefont.h"

#include "fontprograms/characternames.h"

namespace engine {

namespace {

struct Encoding
{
    std::vector<BaseEncoding> bases; // more than one: any of them; none: the program's own
    std::map<unsigned, std::string> differences;
};

std::optional<BaseEncoding> baseNamed(QPDFObjectHandle name)
{
    if (name.isNameAndEquals("/StandardEncoding"))
        return BaseEncoding::Standard;
    if (name.isNameAndEquals("/MacRomanEncoding"))
        return BaseEncoding::MacRoman;
    if (name.isNameAndEquals("/WinAnsiEncoding"))
        return BaseEncoding::WinAnsi;
    return std::nullopt;
}

// Nothing for encodings that readers understand in different ways, if at all.
std::optional<Encoding> encodingOf(QPDFObjectHandle font, bool isBareCff)
{
    QPDFObjectHandle entry = font.getKey("/Encoding");
    QPDFObjectHandle name = entry.isDictionary() ? entry.getKey("/BaseEncoding") : entry;
    Encoding encoding;
    encoding.differences = differencesOf(entry);
    if (const auto base = baseNamed(name))
        encoding.bases = {*base};
    else if (!name.isNull())
        return std::nullopt;
    else if (!isBareCff)
        encoding.bases = {BaseEncoding::Standard, BaseEncoding::MacRoman, BaseEncoding::WinAnsi};
    return encoding;
}

class Resolver
{
public:
    Resolver(Encoding encoding, const FontProgram &program)
        : m_encoding(std::move(encoding))
        , m_program(program)
    {
    }

    std::optional<Glyphs> glyphsOf(unsigned code) const
    {
        const auto difference = m_encoding.differences.find(code);
        Glyphs glyphs =
            difference == m_encoding.differences.end() ? ofBases(code) : ofName(difference->second);
        if (glyphs.empty() && difference != m_encoding.differences.end() &&
            isMeaningless(difference->second))
            return std::nullopt;
        if (glyphs.empty() || !m_program.isBareCff())
            glyphs.merge(m_program.ofCode(code));
        if (glyphs.empty() && !m_program.hasCff())
            glyphs.insert(code);
        return glyphs;
    }

private:
    static bool isMeaningless(const std::string &name)
    {
        return name != ".notdef" && charactersOf(name).empty();
    }

    Glyphs ofBases(unsigned code) const
    {
        Glyphs glyphs;
        for (const BaseEncoding base : m_encoding.bases) {
            if (const char32_t character = characterOf(base, code))
                glyphs.merge(m_program.ofCharacter(character));
        }
        return glyphs;
    }

    // The names of a CFF are sure; those in TrueType programs are only asked after the cmaps.
    Glyphs ofName(const std::string &name) const
    {
        Glyphs glyphs = m_program.named(name);
        if (!glyphs.empty() && m_program.isBareCff())
            return glyphs;
        for (const char32_t character : charactersOf(name))
            glyphs.merge(m_program.ofCharacter(character));
        return glyphs;
    }

    Encoding m_encoding;
    const FontProgram &m_program;
};

} // namespace

std::map<unsigned, std::string> differencesOf(QPDFObjectHandle encoding)
{
    std::map<unsigned, std::string> differences;
    QPDFObjectHandle list =
        encoding.isDictionary() ? encoding.getKey("/Differences") : QPDFObjectHandle::newNull();
    if (!list.isArray())
        return differences;
    unsigned code = 0;
    for (QPDFObjectHandle item : list.getArrayAsVector()) {
        if (item.isInteger())
            code = unsigned(item.getIntValueAsInt() & 0xFFFF);
        else if (item.isName())
            differences[code++] = item.getName().substr(1);
    }
    return differences;
}

std::optional<Glyphs> glyphsOfSimple(QPDFObjectHandle font, const std::set<unsigned> &codes,
                                     const FontProgram &program)
{
    auto encoding = encodingOf(font, program.isBareCff());
    if (!encoding || !program.face().knowsItsCmaps() || program.isCidKeyed())
        return std::nullopt;
    const Resolver resolver(std::move(*encoding), program);
    Glyphs glyphs;
    for (const unsigned code : codes) {
        auto shown = resolver.glyphsOf(code);
        if (!shown)
            return std::nullopt;
        glyphs.merge(*shown);
    }
    return glyphs;
}

} // namespace engine
