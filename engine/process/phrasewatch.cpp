#include "phrasewatch.h"

#include <algorithm>

namespace engine {

void PhraseWatch::take(std::string_view piece)
{
    if (m_seen || m_phrase.empty())
        return;
    m_rest.append(piece);
    m_seen = m_rest.find(m_phrase) != std::string::npos;
    m_rest.erase(0, m_rest.size() - std::min(m_rest.size(), m_phrase.size() - 1));
}

} // namespace engine
