#pragma once

#include <string>
#include <string_view>

namespace engine {

/// Looks out for a phrase in a text that comes in pieces.
class PhraseWatch
{
public:
    explicit PhraseWatch(std::string_view phrase)
        : m_phrase(phrase)
    {
    }

    void take(std::string_view piece);
    [[nodiscard]] std::string_view phrase() const { return m_phrase; }
    [[nodiscard]] bool hasSeen() const { return m_seen; }

private:
    std::string_view m_phrase;
    std::string m_rest; ///< the end of what has come, shorter than the phrase
    bool m_seen = false;
};

} // namespace engine
