#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace engine {

struct Token
{
    enum Kind {
        End,
        Broken,
        Number,
        Name,
        String,
        Operator,
        ArrayBegin,
        ArrayEnd,
        DictBegin,
        DictEnd
    };

    Kind kind = End;
    double number = 0;
    std::string text; ///< a name with its slash and without escapes; a string's bytes; an operator
};

/// Takes a content stream apart. Broken is the last token of what can't be read to its end.
class ContentLexer
{
public:
    /// The content outlives the lexer.
    explicit ContentLexer(std::string_view content);

    /// The token is valid until the next one is read.
    const Token &next();

    /// Behind ID: passes over an inline image's bytes, as many as given if that is right, and its
    /// EI. Returns false if there is no end.
    bool skipInlineImage(std::optional<std::size_t> bytes);

private:
    const Token &give(Token::Kind kind);
    const Token &give(Token::Kind kind, std::size_t bytes);
    const Token &name();
    const Token &string();
    const Token &hexString();
    const Token &regular();
    void skipBlanks();
    void escape();
    [[nodiscard]] int at(std::size_t position) const;
    [[nodiscard]] bool endsImageAt(std::size_t position) const;

    std::string_view m_content;
    std::size_t m_position = 0;
    Token m_token;
};

} // namespace engine
