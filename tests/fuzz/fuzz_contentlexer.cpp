#include "input.h"

#include "engine/content/contentlexer.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    engine::ContentLexer lexer({reinterpret_cast<const char *>(data), size});
    std::size_t tokens = 0;
    for (;;) {
        const engine::Token &token = lexer.next();
        if (token.kind == engine::Token::End || token.kind == engine::Token::Broken)
            break;
        promise(++tokens <= size);
        if (token.kind == engine::Token::Operator && token.text == "ID" &&
            !lexer.skipInlineImage(tokens % 2 == 0 ? std::optional<std::size_t>()
                                                   : std::optional(tokens)))
            break;
    }
    return 0;
}
