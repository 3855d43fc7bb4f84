#include "fontuses.h"

namespace engine {

std::string identityOf(QPDFObjectHandle font)
{
    return font.isIndirect() ? font.getObjGen().unparse() : font.unparse();
}

void FontUses::text(const Shown &shown, QPDFObjectHandle font, const std::string &codes)
{
    if (codes.empty())
        return;
    if (!font.isDictionary()) {
        m_areComplete = false;
        return;
    }
    FontUse &use = m_uses[identityOf(font)];
    for (std::size_t place = 0; place < codes.size(); ++place) {
        const auto byte = std::uint8_t(codes[place]);
        use.bytes.insert(byte);
        if (place % 2 == 1)
            use.pairs.insert(unsigned(std::uint8_t(codes[place - 1])) << 8 | byte);
    }
    use.hasOddBytes = use.hasOddBytes || codes.size() % 2 == 1;
    if (shown.drawn && shown.page >= 0)
        use.pages.insert(shown.page);
}

void FontUses::unclear(const Shown & /*shown*/, QPDFObjectHandle /*content*/)
{
    m_areComplete = false;
}

FontUse FontUses::of(QPDFObjectHandle font) const
{
    const auto use = m_uses.find(identityOf(font));
    return use == m_uses.end() ? FontUse() : use->second;
}

} // namespace engine
