#include "contentrun.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace engine {

namespace {

// An operator has six numbers at most, a colour 32.
constexpr std::size_t mostOperands = 64;

// Readers stop somewhere, too.
constexpr std::size_t mostSaved = 10'000;

std::optional<Matrix> matrixOf(QPDFObjectHandle array)
{
    if (!array.isArray() || array.getArrayNItems() != 6)
        return {};
    double numbers[6];
    for (int index = 0; index < 6; ++index) {
        if (!array.getArrayItem(index).isNumber())
            return {};
        numbers[index] = array.getArrayItem(index).getNumericValue();
    }
    return Matrix{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
}

// The entries of an inline image that tell how many bytes it has.
struct InlineImage
{
    std::size_t width = 0, height = 0, bits = 1, components = 1;
    bool filtered = false, understood = true;

    void set(const std::string &key, const Token &value)
    {
        const auto count = std::size_t(std::clamp(value.number, 0., 1e6));
        if (key == "/W" || key == "/Width")
            width = count;
        else if (key == "/H" || key == "/Height")
            height = count;
        else if (key == "/BPC" || key == "/BitsPerComponent")
            bits = count;
        else if (key == "/F" || key == "/Filter")
            filtered = true;
        else if (key == "/CS" || key == "/ColorSpace")
            setSpace(value);
    }

    void setSpace(const Token &value)
    {
        const std::string name = value.kind == Token::Name ? value.text : "";
        components = name == "/RGB" || name == "/DeviceRGB"     ? 3
                     : name == "/CMYK" || name == "/DeviceCMYK" ? 4
                                                                : 1;
        understood = components > 1 || name == "/G" || name == "/DeviceGray";
    }

    [[nodiscard]] std::optional<std::size_t> bytes() const
    {
        if (filtered || !understood)
            return {};
        return (width * bits * components + 7) / 8 * height;
    }
};

} // namespace

struct ContentOperators
{
    static ContentRun::Operator find(const std::string &name)
    {
        using Run = ContentRun;
        static const std::unordered_map<std::string, Run::Operator> operators = {
            {"q", &Run::save},
            {"Q", &Run::restore},
            {"cm", &Run::concatenate},
            {"Do", &Run::showObject},
            {"gs", &Run::setGraphicsState},
            {"scn", &Run::setColour},
            {"SCN", &Run::setColour},
            {"cs", &Run::setColourSpace},
            {"CS", &Run::setColourSpace},
            {"sh", &Run::shade},
            {"BT", &Run::beginText},
            {"Tm", &Run::setTextMatrix},
            {"Tf", &Run::setFont},
            {"Tz", &Run::setFontScaling},
            {"Tj", &Run::showText},
            {"TJ", &Run::showText},
            {"'", &Run::showText},
            {"\"", &Run::showText},
            {"DP", &Run::markPoint},
            {"BMC", &Run::beginMark},
            {"BDC", &Run::beginPropertyMark},
            {"EMC", &Run::endMark},
        };
        const auto found = operators.find(name);
        return found == operators.end() ? nullptr : found->second;
    }
};

ContentRun::ContentRun(ContentNesting &nesting, ContentScope &scope, const ContentStart &start)
    : m_nesting(nesting)
    , m_scope(scope)
    , m_shown(start.shown)
    , m_base(start.matrix)
    , m_state{start.matrix, start.font, start.fontSize, start.fontScaling}
{
}

bool ContentRun::read(std::string_view content)
{
    ContentLexer lexer(content);
    for (;;) {
        const Token &token = lexer.next();
        if (token.kind == Token::Broken)
            return false;
        if (token.kind == Token::End)
            return m_arrays == 0 && m_dictionaries == 0;
        if (token.kind != Token::Operator)
            take(token);
        else if (token.text != "BI")
            execute(token.text);
        else if (!passInlineImage(lexer))
            return false;
    }
}

void ContentRun::take(const Token &token)
{
    m_arrays += int(token.kind == Token::ArrayBegin) - int(token.kind == Token::ArrayEnd);
    m_dictionaries += int(token.kind == Token::DictBegin) - int(token.kind == Token::DictEnd);
    if (m_dictionaries != 0)
        return;
    if (token.kind == Token::String)
        m_codes += token.text;
    if (m_arrays != 0)
        return;
    if (token.kind == Token::Number && m_numbers.size() < mostOperands)
        m_numbers.push_back(token.number);
    if (token.kind == Token::Name && m_names.size() < mostOperands)
        m_names.push_back(token.text);
}

void ContentRun::execute(const std::string &name)
{
    // What looks like an operator inside an array or a dictionary is true, false or null.
    if (m_arrays > 0 || m_dictionaries > 0)
        return;
    if (const Operator operation = ContentOperators::find(name))
        (this->*operation)();
    m_numbers.clear();
    m_names.clear();
    m_codes.clear();
    m_arrays = 0;
    m_dictionaries = 0;
}

bool ContentRun::passInlineImage(ContentLexer &lexer)
{
    InlineImage image;
    std::string key;
    for (const Token *token = &lexer.next(); token->text != "ID" || token->kind != Token::Operator;
         token = &lexer.next()) {
        if (token->kind == Token::End || token->kind == Token::Broken)
            return false;
        if (key.empty() && token->kind == Token::Name) {
            key = token->text;
            continue;
        }
        image.set(key, *token);
        if (key == "/CS" || key == "/ColorSpace")
            find("/ColorSpace", token->text);
        key.clear();
    }
    m_names.clear();
    return lexer.skipInlineImage(image.bytes());
}

double ContentRun::number(std::size_t fromEnd) const
{
    return m_numbers.size() > fromEnd ? m_numbers[m_numbers.size() - 1 - fromEnd] : 0;
}

std::optional<Matrix> ContentRun::matrix() const
{
    if (m_numbers.size() < 6)
        return {};
    return Matrix{number(5), number(4), number(3), number(2), number(1), number(0)};
}

QPDFObjectHandle ContentRun::find(const char *category, const std::string &name)
{
    bool isFirst = false;
    ContentScope::Found &found = m_scope.find(category, name, isFirst);
    if (isFirst && found.resources.isDictionary())
        m_nesting.visitor().resource(found.resources, category, name);
    return found.value;
}

QPDFObjectHandle ContentRun::named(const char *category)
{
    return m_names.empty() ? QPDFObjectHandle::newNull() : find(category, m_names.back());
}

bool ContentRun::isDrawn(QPDFObjectHandle object) const
{
    QPDFObjectHandle dictionary = object.isStream() ? object.getDict() : object;
    return m_shown.drawn && m_hidden == 0 &&
           (!dictionary.isDictionary() || m_nesting.layers().shows(dictionary.getKey("/OC")));
}

ContentStart ContentRun::start(QPDFObjectHandle content, const Matrix &matrix) const
{
    ContentStart start{m_shown, matrix, m_state.font, m_state.fontSize, m_state.fontScaling};
    start.shown.drawn = isDrawn(content);
    const auto own = matrixOf(content.getDict().getKey("/Matrix"));
    start.matrix = own ? product(*own, matrix) : matrix;
    return start;
}

void ContentRun::save()
{
    if (m_saved.size() < mostSaved)
        m_saved.push_back(m_state);
}

void ContentRun::restore()
{
    if (m_saved.empty())
        return;
    m_state = m_saved.back();
    m_saved.pop_back();
}

void ContentRun::concatenate()
{
    if (const auto own = matrix())
        m_state.matrix = product(*own, m_state.matrix);
}

void ContentRun::showObject()
{
    QPDFObjectHandle object = named("/XObject");
    if (!object.isStream())
        return;
    const ContentStart here = start(object, m_state.matrix);
    if (object.getDict().getKey("/Subtype").isNameAndEquals("/Image"))
        m_nesting.showImage(here.shown, object, m_state.matrix);
    else
        m_nesting.show(object, object.getDict().getKey("/Resources"), here, m_scope);
}

void ContentRun::setGraphicsState()
{
    QPDFObjectHandle state = named("/ExtGState");
    if (!state.isDictionary())
        return;
    QPDFObjectHandle font = state.getKey("/Font");
    if (font.isArray() && font.getArrayNItems() == 2 && font.getArrayItem(1).isNumber()) {
        m_state.font = font.getArrayItem(0);
        m_state.fontSize = font.getArrayItem(1).getNumericValue();
    }
    setSoftMask(state.getKey("/SMask"));
}

void ContentRun::setSoftMask(QPDFObjectHandle mask)
{
    QPDFObjectHandle group = mask.isDictionary() ? mask.getKey("/G") : QPDFObjectHandle::newNull();
    if (group.isStream())
        m_nesting.show(group, group.getDict().getKey("/Resources"), start(group, m_state.matrix),
                       m_scope);
}

void ContentRun::setColour()
{
    QPDFObjectHandle pattern = named("/Pattern");
    if (!pattern.isStream())
        return;
    ContentStart cell = start(pattern, m_base);
    cell.shown.placed = false;
    m_nesting.show(pattern, pattern.getDict().getKey("/Resources"), cell, m_scope);
}

void ContentRun::setColourSpace()
{
    named("/ColorSpace");
}

void ContentRun::shade()
{
    named("/Shading");
}

void ContentRun::beginText()
{
    m_textMatrix = {};
}

void ContentRun::setTextMatrix()
{
    if (const auto own = matrix())
        m_textMatrix = {own->a, own->b, own->c, own->d, 0, 0};
}

void ContentRun::setFont()
{
    m_state.font = named("/Font");
    m_state.fontSize = number(0);
}

void ContentRun::setFontScaling()
{
    m_state.fontScaling = number(0) / 100;
}

void ContentRun::showText()
{
    Shown here = m_shown;
    here.drawn = isDrawn(m_state.font);
    m_nesting.visitor().text(here, m_state.font, m_codes);
    if (m_state.font.isDictionary() && m_state.font.getKey("/Subtype").isNameAndEquals("/Type3"))
        showGlyphs();
}

// All of the font's: one that is never shown does no harm.
void ContentRun::showGlyphs()
{
    QPDFObjectHandle glyphs = m_state.font.getKey("/CharProcs");
    const auto own = matrixOf(m_state.font.getKey("/FontMatrix"));
    if (!glyphs.isDictionary() || !own)
        return;
    const Matrix size{m_state.fontSize * m_state.fontScaling, 0, 0, m_state.fontSize, 0, 0};
    const Matrix toPage = product(product(*own, size), product(m_textMatrix, m_state.matrix));
    for (auto &[name, glyph] : glyphs.getDictAsMap()) {
        if (!glyph.isStream())
            continue;
        ContentStart here = start(glyph, {toPage.a, toPage.b, toPage.c, toPage.d, 0, 0});
        here.shown.placed = false;
        m_nesting.show(glyph, m_state.font.getKey("/Resources"), here, m_scope);
    }
}

void ContentRun::markPoint()
{
    if (m_names.size() > 1)
        named("/Properties");
}

void ContentRun::beginMark()
{
    m_marks.push_back(false);
}

void ContentRun::beginPropertyMark()
{
    QPDFObjectHandle properties =
        m_names.size() > 1 ? named("/Properties") : QPDFObjectHandle::newNull();
    const bool hides =
        !m_names.empty() && m_names.front() == "/OC" && !m_nesting.layers().shows(properties);
    m_marks.push_back(hides);
    m_hidden += int(hides);
}

void ContentRun::endMark()
{
    if (m_marks.empty())
        return;
    m_hidden -= int(m_marks.back());
    m_marks.pop_back();
}

} // namespace engine
