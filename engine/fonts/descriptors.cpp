#include "descriptors.h"

#include "compositefont.h"
#include "lossless/claim.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace engine {

namespace {

constexpr std::size_t tagLength = 6;

// No D: MuPDF (1.21) takes names that begin with DF or DLC for those of fonts that are nothing
// without their hints, and draws them otherwise.
constexpr std::string_view letters = "ABCEFGHIJKLMNOPQRSTUVWXYZ";

bool isTagged(const std::string &name)
{
    return name.size() > tagLength + 2 && name[tagLength + 1] == '+' &&
           std::all_of(name.begin() + 1, name.begin() + 1 + tagLength,
                       [](char letter) { return letter >= 'A' && letter <= 'Z'; });
}

void setTagAt(QPDFObjectHandle dictionary, const char *key, const std::string &tag)
{
    QPDFObjectHandle name = dictionary.getKey(key);
    if (name.isName())
        dictionary.replaceKey(
            key, QPDFObjectHandle::newName("/" + tag + "+" + withoutTag(name.getName()).substr(1)));
}

bool claimsPdfA(QPDF &document)
{
    return claimedStandard(document).value_or("").rfind("PDF/A", 0) == 0;
}

std::string bitsOf(const std::set<unsigned> &cids)
{
    std::string bits(cids.empty() ? 1 : *cids.rbegin() / 8 + 1, '\0');
    for (const unsigned cid : cids)
        bits[cid / 8] = char(std::uint8_t(bits[cid / 8]) | 0x80U >> cid % 8);
    return bits;
}

std::string namesOf(const Glyphs &glyphs, const FontProgram &program)
{
    std::string names;
    for (const auto &[name, glyph] : program.names()) {
        if (glyph != 0 && glyphs.count(glyph) != 0)
            names += "/" + name;
    }
    return names;
}

// Those that are shown, and all that there is anything to see of.
Glyphs presentIn(const FontProgram &subset, const Glyphs &shown)
{
    Glyphs present = shown;
    present.insert(0);
    for (Glyph glyph = 0; glyph < subset.face().count(); ++glyph) {
        if (!subset.face().isBlank(glyph))
            present.insert(glyph);
    }
    return present;
}

} // namespace

std::string tagOf(const std::string &program)
{
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char byte : program)
        hash = (hash ^ std::uint8_t(byte)) * 0x100000001B3;
    std::string tag;
    for (; tag.size() < tagLength; hash /= letters.size())
        tag.push_back(letters[hash % letters.size()]);
    return tag;
}

std::string withoutTag(const std::string &name)
{
    return isTagged(name) ? "/" + name.substr(tagLength + 2) : name;
}

void setTag(const EmbeddedProgram &program, const std::string &tag)
{
    for (ProgramUser user : program.users) {
        setTagAt(user.font, "/BaseFont", tag);
        if (user.isComposite())
            setTagAt(user.descendant, "/BaseFont", tag);
        setTagAt(user.descriptor, "/FontName", tag);
    }
}

void listGlyphs(QPDF &document, const EmbeddedProgram &program, const FontProgram &subset,
                const Glyphs &glyphs)
{
    const bool isAsked = claimsPdfA(document);
    const Glyphs present = presentIn(subset, glyphs);
    for (ProgramUser user : program.users) {
        QPDFObjectHandle descriptor = user.descriptor;
        const bool hasNames = !user.isComposite() && !subset.names().empty() && subset.hasCff();
        if (user.isComposite() && (isAsked || descriptor.hasKey("/CIDSet"))) {
            const std::string bits = bitsOf(cidsOf(user.descendant, present, subset));
            descriptor.replaceKey("/CIDSet", QPDFObjectHandle::newStream(&document, bits));
        }
        if (hasNames && (isAsked || descriptor.hasKey("/CharSet"))) {
            const std::string names = namesOf(present, subset);
            descriptor.replaceKey("/CharSet", QPDFObjectHandle::newString(names));
        }
    }
}

} // namespace engine
