#pragma once

#include "content/contentwalk.h"

#include <map>
#include <set>

namespace engine {

/// One name for each font dictionary of a document, those without a number of their own too.
std::string identityOf(QPDFObjectHandle font);

/// What the contents show in one font.
struct FontUse
{
    std::set<unsigned> bytes; ///< the codes of a simple font
    std::set<unsigned> pairs; ///< those of two bytes
    bool hasOddBytes = false; ///< there were strings that no such codes make up
    std::set<int> pages;      ///< where readers draw it; indices from 0
};

/// What all contents show, font by font.
class FontUses : public ContentVisitor
{
public:
    void text(const Shown &shown, QPDFObjectHandle font, const std::string &codes) override;
    void unclear(const Shown &shown, QPDFObjectHandle content) override;

    /// Whether all contents could be read, and every text has a font.
    [[nodiscard]] bool areComplete() const { return m_areComplete; }

    /// Empty if nothing is shown in it.
    [[nodiscard]] FontUse of(QPDFObjectHandle font) const;

private:
    std::map<std::string, FontUse> m_uses;
    bool m_areComplete = true;
};

} // namespace engine
