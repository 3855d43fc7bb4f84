#include "texts.h"

#include "../tounicode.h"
#include "streams.h"

#include <algorithm>
#include <map>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <set>

namespace engine {

namespace {

class TextSearch : public QPDFObjectHandle::ParserCallbacks
{
public:
    void handleObject(QPDFObjectHandle object) override
    {
        static constexpr const char *showing[] = {"Tj", "TJ", "'", "\""};
        if (!object.isOperator() || std::find(std::begin(showing), std::end(showing),
                                              object.getOperatorValue()) == std::end(showing))
            return;
        m_found = true;
        terminateParsing();
    }
    void handleEOF() override {}
    [[nodiscard]] bool hasFound() const { return m_found; }

private:
    bool m_found = false;
};

bool showsText(QPDFPageObjectHelper page)
{
    TextSearch search;
    page.parseContents(&search);
    bool found = search.hasFound();
    page.forEachFormXObject(true,
                            [&](QPDFObjectHandle &form, QPDFObjectHandle &, const std::string &) {
                                if (!found)
                                    QPDFPageObjectHelper(form).parseContents(&search);
                                found = search.hasFound();
                            });
    return found;
}

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
    for (QPDFObjectHandle object : document.getAllObjects()) {
        if (!object.isDictionary() || !object.getKey("/Type").isNameAndEquals("/Font") ||
            !object.getKey("/ToUnicode").isStream())
            continue;
        const auto cmap = decodedBytesOf(object.getKey("/ToUnicode"));
        fonts[nameOf(object)].push_back({object, lettersOfCodes(cmap.value_or(""))});
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

bool restoreLetters(QPDF &copy, QPDF &original)
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

bool losesText(QPDF &original, QPDF &copy)
{
    const auto pages = QPDFPageDocumentHelper(original).getAllPages();
    const auto copies = QPDFPageDocumentHelper(copy).getAllPages();
    for (std::size_t index = 0; index < std::min(pages.size(), copies.size()); ++index) {
        if (showsText(pages[index]) && !showsText(copies[index]))
            return true;
    }
    return false;
}

} // namespace engine
