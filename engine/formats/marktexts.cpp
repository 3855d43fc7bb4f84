#include "marktexts.h"

#include <optional>

namespace engine {

namespace {

bool isOctal(char letter)
{
    return letter >= '0' && letter <= '7';
}

class MarkParser
{
public:
    explicit MarkParser(const std::string &text)
        : m_text(text)
    {
    }

    std::map<std::string, std::string> texts()
    {
        std::map<std::string, std::string> texts;
        while ((m_place = m_text.find('/', m_place)) != std::string::npos) {
            const std::string key = name();
            m_place = m_text.find_first_not_of(" \t\r\n", m_place);
            if (m_place == std::string::npos || m_text[m_place] != '(')
                continue;
            if (const auto text = literal())
                texts[key] = *text;
        }
        return texts;
    }

private:
    std::string name()
    {
        const auto end = m_text.find_first_of(" \t\r\n()[]<>{}/%", m_place + 1);
        std::string name = m_text.substr(m_place, end - m_place);
        m_place = end;
        return name;
    }

    // From the opening parenthesis to behind the closing one.
    std::optional<std::string> literal()
    {
        std::string text;
        int depth = 0;
        for (; m_place < m_text.size(); ++m_place) {
            const char letter = m_text[m_place];
            if (letter == '\\') {
                text += escaped();
                continue;
            }
            depth += letter == '(' ? 1 : letter == ')' ? -1 : 0;
            if (depth == 0) {
                ++m_place;
                return text.substr(1);
            }
            text += letter;
        }
        return {};
    }

    // Leaves the place at the last letter of the escape.
    std::string escaped()
    {
        static constexpr std::string_view letters = "nrtbf";
        static constexpr std::string_view meanings = "\n\r\t\b\f";
        if (++m_place >= m_text.size())
            return {};
        const char letter = m_text[m_place];
        if (isOctal(letter))
            return octal();
        const auto known = letters.find(letter);
        if (known != std::string_view::npos)
            return {meanings[known]};
        return letter == '\n' ? std::string() : std::string(1, letter);
    }

    std::string octal()
    {
        int code = m_text[m_place] - '0';
        for (int more = 0; more < 2 && m_place + 1 < m_text.size() && isOctal(m_text[m_place + 1]);
             ++more)
            code = code * 8 + (m_text[++m_place] - '0');
        return {static_cast<char>(code)};
    }

    const std::string &m_text;
    std::size_t m_place = 0;
};

} // namespace

std::map<std::string, std::string> markTexts(const std::string &mark)
{
    return MarkParser(mark).texts();
}

} // namespace engine
