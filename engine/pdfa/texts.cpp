#include "texts.h"

#include "formats/tounicode.h"
#include "pdf/streams.h"
#include "pdf/walk.h"

#include <algorithm>
#include <map>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <set>

namespace engine {

namespace {

bool hasLetters(QPDFObjectHandle operand)
{
    if (operand.isString())
        return !operand.getStringValue().empty();
    if (!operand.isArray())
        return false;
    const auto items = operand.getArrayAsVector();
    return std::any_of(items.begin(), items.end(), hasLetters);
}

class TextSearch : public QPDFObjectHandle::ParserCallbacks
{
public:
    void handleObject(QPDFObjectHandle object) override
    {
        static constexpr const char *showing[] = {"Tj", "TJ", "'", "\""};
        const bool shows =
            object.isOperator() && std::find(std::begin(showing), std::end(showing),
                                             object.getOperatorValue()) != std::end(showing);
        m_found = m_found || (shows && hasLetters(m_operand));
        m_operand = object;
        if (m_found)
            terminateParsing();
    }
    void handleEOF() override {}
    [[nodiscard]] bool hasFound() const { return m_found; }

private:
    QPDFObjectHandle m_operand = QPDFObjectHandle::newNull(); ///< the last one
    bool m_found = false;
};

// Forms are drawn by many pages; each is read once.
class TextFinder
{
public:
    bool showsText(QPDFPageObjectHelper page)
    {
        TextSearch search;
        page.parseContents(&search);
        return search.hasFound() || formsShowText(page.getAttribute("/Resources", false), 0);
    }

private:
    bool formsShowText(QPDFObjectHandle resources, int depth)
    {
        constexpr int deepest = 100;
        QPDFObjectHandle objects =
            resources.isDictionary() ? resources.getKey("/XObject") : QPDFObjectHandle::newNull();
        if (!objects.isDictionary() || depth > deepest)
            return false;
        if (!objects.isIndirect())
            return anyShowsText(objects, depth);
        const auto known = m_known.find(objects.getObjGen());
        if (known != m_known.end())
            return known->second;
        m_known[objects.getObjGen()] = false;
        return m_known[objects.getObjGen()] = anyShowsText(objects, depth);
    }

    bool anyShowsText(QPDFObjectHandle objects, int depth)
    {
        const auto entries = objects.getDictAsMap();
        return std::any_of(entries.begin(), entries.end(),
                           [&](const auto &entry) { return formShowsText(entry.second, depth); });
    }

    bool formShowsText(QPDFObjectHandle form, int depth)
    {
        if (!form.isStream() || !form.getDict().getKey("/Subtype").isNameAndEquals("/Form"))
            return false;
        const auto known = m_known.find(form.getObjGen());
        if (known != m_known.end())
            return known->second;
        m_known[form.getObjGen()] = false;
        TextSearch search;
        QPDFPageObjectHelper(form).parseContents(&search);
        return m_known[form.getObjGen()] =
                   search.hasFound() ||
                   formsShowText(form.getDict().getKey("/Resources"), depth + 1);
    }

    std::map<QPDFObjGen, bool> m_known;
};

using Letters = std::map<std::string, std::string>;

struct Font
{
    QPDFObjectHandle dictionary;
    Letters letters;
};

// "ABCDEF+Name" of a subset and "Name" are one font.
std::string nameOf(QPDFObjectHandle font)
{
    const std::string name =
        font.getKey("/BaseFont").isName() ? font.getKey("/BaseFont").getName() : std::string();
    const auto plus = name.find('+');
    return plus == std::string::npos ? name : "/" + name.substr(plus + 1);
}

using Fonts = std::vector<Font>;

std::map<std::string, Fonts> fontsWithLetters(QPDF &document)
{
    std::map<std::string, Fonts> fonts;
    for (QPDFObjectHandle dictionary : reachableDictionaries(document)) {
        if (!dictionary.getKey("/Type").isNameAndEquals("/Font") ||
            !dictionary.getKey("/ToUnicode").isStream())
            continue;
        const auto cmap = decodedBytesOf(dictionary.getKey("/ToUnicode"));
        fonts[nameOf(dictionary)].push_back({dictionary, lettersOfCodes(cmap.value_or(""))});
    }
    return fonts;
}

std::set<std::string> meaningsOf(const Fonts &fonts)
{
    std::set<std::string> meanings = {std::string(), std::string(2, '\0')};
    for (const Font &font : fonts) {
        for (const auto &[code, letters] : font.letters)
            meanings.insert(letters);
    }
    return meanings;
}

// Ghostscript writes a zero for no letter at all.
bool isSame(const std::string &written, const std::string &own)
{
    return written == own || (own.empty() && written == std::string(2, '\0'));
}

bool isComposite(QPDFObjectHandle font)
{
    return font.getKey("/Encoding").isNameAndEquals("/Identity-H");
}

// Whether the copy's codes are the original's: all of them are among them, most with the same
// meaning.
bool hasCodesOf(const Fonts &fonts, const Font &own)
{
    std::size_t codes = 0;
    std::size_t same = 0;
    for (const Font &font : fonts) {
        for (const auto &[code, letters] : font.letters) {
            const auto meaning = own.letters.find(code);
            if (!isComposite(font.dictionary) || meaning == own.letters.end())
                return false;
            ++codes;
            same += std::size_t(isSame(letters, meaning->second));
        }
    }
    return isComposite(own.dictionary) && same * 2 >= codes;
}

bool agrees(const Letters &letters, const Letters &own)
{
    return std::all_of(letters.begin(), letters.end(), [&](const auto &entry) {
        return isSame(entry.second, own.at(entry.first));
    });
}

// The original's own meanings serve the copy as well.
void takeLetters(QPDF &copy, const Fonts &fonts, Font own)
{
    const auto cmap = decodedBytesOf(own.dictionary.getKey("/ToUnicode"));
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&copy, cmap.value_or(""));
    for (Font font : fonts) {
        if (!agrees(font.letters, own.letters))
            font.dictionary.replaceKey("/ToUnicode", stream);
    }
}

bool meansOnlyWhatIsThere(const Fonts &fonts, const Fonts &originals)
{
    const std::set<std::string> there = meaningsOf(originals);
    const std::set<std::string> written = meaningsOf(fonts);
    return std::includes(there.begin(), there.end(), written.begin(), written.end());
}

} // namespace

bool restoreToUnicode(QPDF &copy, QPDF &original)
{
    auto originals = fontsWithLetters(original);
    for (const auto &[name, fonts] : fontsWithLetters(copy)) {
        const Fonts &own = originals[name];
        if (own.size() == 1 && hasCodesOf(fonts, own.front()))
            takeLetters(copy, fonts, own.front());
        else if (!own.empty() && !meansOnlyWhatIsThere(fonts, own))
            return false;
    }
    return true;
}

bool losesText(QPDF &copy, QPDF &original)
{
    const auto pages = QPDFPageDocumentHelper(original).getAllPages();
    const auto copies = QPDFPageDocumentHelper(copy).getAllPages();
    TextFinder before;
    TextFinder after;
    for (std::size_t index = 0; index < std::min(pages.size(), copies.size()); ++index) {
        if (!after.showsText(copies[index]) && before.showsText(pages[index]))
            return true;
    }
    return false;
}

} // namespace engine
