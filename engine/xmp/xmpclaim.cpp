#include "xmpclaim.h"

namespace engine {

namespace {

struct Claim
{
    const char *property; ///< with the prefix that all who write it use
    const char *standard; ///< what comes before the property's own text
};

// In the order of what they ask for.
constexpr Claim claims[] = {
    {"pdfaid:part", "PDF/A-"},    {"pdfxid:GTS_PDFXVersion", ""},   {"pdfx:GTS_PDFXVersion", ""},
    {"pdfe:ISO_PDFEVersion", ""}, {"pdfvtid:GTS_PDFVTVersion", ""}, {"pdfuaid:part", "PDF/UA-"},
};

bool isBlank(char letter)
{
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
}

std::size_t afterBlanks(const std::string &text, std::size_t position)
{
    while (position < text.size() && isBlank(text[position]))
        ++position;
    return position;
}

// Either <name>text</name> or name="text".
std::string textAt(const std::string &packet, std::size_t position)
{
    std::size_t begin = afterBlanks(packet, position);
    if (begin >= packet.size())
        return {};
    if (packet[begin] == '=')
        begin = afterBlanks(packet, begin + 1);
    else if (packet[begin] != '>')
        return {};
    begin = afterBlanks(packet, begin + 1);
    const std::size_t end = packet.find_first_of("<\"' \t\r\n", begin);
    return end == std::string::npos ? std::string() : packet.substr(begin, end - begin);
}

} // namespace

std::optional<std::string> claimInPacket(const std::string &packet)
{
    for (const Claim &claim : claims) {
        const std::string name = claim.property;
        for (auto found = packet.find(name); found != std::string::npos;
             found = packet.find(name, found + 1)) {
            const std::string text = textAt(packet, found + name.size());
            if (!text.empty())
                return claim.standard + text;
        }
    }
    return {};
}

} // namespace engine
