#pragma once

#include "contentlexer.h"
#include "contentnesting.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

/// One content, read from its beginning to its end.
class ContentRun
{
public:
    ContentRun(ContentNesting &nesting, ContentScope &scope, const ContentStart &start);

    /// Returns false if it can't be read to its end.
    bool read(std::string_view content);

    using Operator = void (ContentRun::*)();

private:
    friend struct ContentOperators;

    struct State
    {
        Matrix matrix;
        QPDFObjectHandle font;
        double fontSize;
        double fontScaling;
    };

    void take(const Token &token);
    void execute(const std::string &name);
    bool passInlineImage(ContentLexer &lexer);
    [[nodiscard]] double number(std::size_t fromEnd) const;
    [[nodiscard]] std::optional<Matrix> matrix() const;
    QPDFObjectHandle find(const char *category, const std::string &name);
    QPDFObjectHandle named(const char *category);
    [[nodiscard]] ContentStart start(QPDFObjectHandle content, const Matrix &matrix) const;
    [[nodiscard]] bool isDrawn(QPDFObjectHandle object) const;

    void save();
    void restore();
    void concatenate();
    void showObject();
    void setGraphicsState();
    void setSoftMask(QPDFObjectHandle mask);
    void setColour();
    void setColourSpace();
    void shade();
    void beginText();
    void setTextMatrix();
    void setFont();
    void setFontScaling();
    void showText();
    void showGlyphs();
    void markPoint();
    void beginMark();
    void beginPropertyMark();
    void endMark();

    ContentNesting &m_nesting;
    ContentScope &m_scope;
    const Shown m_shown;
    const Matrix m_base;
    State m_state;
    std::vector<State> m_saved;
    Matrix m_textMatrix;       ///< of which the place doesn't count
    std::vector<bool> m_marks; ///< whether each mark hides what it holds
    int m_hidden = 0;          ///< marks that do

    // Operands since the last operator.
    std::vector<double> m_numbers;
    std::vector<std::string> m_names;
    std::string m_codes;
    int m_arrays = 0;
    int m_dictionaries = 0;
};

} // namespace engine
