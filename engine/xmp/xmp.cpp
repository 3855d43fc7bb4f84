#include "xmp.h"

#include <string_view>

namespace engine {

namespace {

std::string escaped(std::string_view text)
{
    std::string result;
    for (const char letter : text) {
        if (letter == '&')
            result += "&amp;";
        else if (letter == '<')
            result += "&lt;";
        else if (letter == '>')
            result += "&gt;";
        else
            result += letter;
    }
    return result;
}

std::string element(const std::string &name, const std::string &text)
{
    return text.empty() ? "" : "<" + name + ">" + escaped(text) + "</" + name + ">\n";
}

std::string inList(const std::string &name, const std::string &list, const std::string &text,
                   const std::string &attribute = {})
{
    if (text.empty())
        return {};
    return "<" + name + "><rdf:" + list + "><rdf:li" + attribute + ">" + escaped(text) +
           "</rdf:li></rdf:" + list + "></" + name + ">\n";
}

std::string inDefaultLanguage(const std::string &name, const std::string &text)
{
    return inList(name, "Alt", text, " xml:lang=\"x-default\"");
}

std::string digitsOf(const std::string &text, std::size_t position, std::size_t count)
{
    if (text.size() < position + count)
        return {};
    std::string digits = text.substr(position, count);
    return digits.find_first_not_of("0123456789") == std::string::npos ? digits : std::string();
}

// "", "Z", "+01'00'", also without its last apostrophe
std::string zoneOf(const std::string &date, std::size_t position)
{
    if (position >= date.size() || date[position] == 'Z')
        return "Z";
    const std::string hours = digitsOf(date, position + 1, 2);
    const std::string minutes = digitsOf(date, position + 4, 2);
    if (hours.empty())
        return "Z";
    return date[position] + hours + ":" + (minutes.empty() ? "00" : minutes);
}

std::size_t followersOf(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return 1;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 2;
    return lead >= 0xF0 && lead <= 0xF4 ? 3 : 0;
}

} // namespace

std::string xmpDate(const std::string &date)
{
    constexpr std::size_t positions[] = {6, 8, 10, 12, 14};
    constexpr std::string_view separators = "--T::";
    if (date.compare(0, 2, "D:") != 0)
        return {};
    std::string result = digitsOf(date, 2, 4);
    for (std::size_t index = 0; index < std::size(positions); ++index) {
        const std::string digits = digitsOf(date, positions[index], 2);
        if (result.empty() || digits.empty())
            return {};
        result += separators[index] + digits;
    }
    return result + zoneOf(date, 16);
}

std::string writableInXml(const std::string &text)
{
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto lead = static_cast<unsigned char>(text[index]);
        const std::string_view three = std::string_view(text).substr(index, 3);
        const bool surrogate =
            lead == 0xED && three.size() == 3 && static_cast<unsigned char>(three[1]) >= 0xA0;
        if (surrogate || three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF") {
            result += ' ';
            index += 2;
        } else {
            result += lead < ' ' || lead == 0x7F ? ' ' : text[index];
        }
    }
    return result;
}

std::string xmpPacket(const Description &description, bool pdfa)
{
    std::string text =
        "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
        "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
        "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
        " xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\""
        " xmlns:pdfaid=\"http://www.aiim.org/pdfa/ns/id/\">\n";
    text += element("dc:format", "application/pdf");
    text += inDefaultLanguage("dc:title", description.title);
    text += inList("dc:creator", "Seq", description.author);
    text += inDefaultLanguage("dc:description", description.subject);
    text += element("pdf:Keywords", description.keywords);
    text += element("pdf:Producer", description.producer);
    text += element("xmp:CreatorTool", description.creator);
    text += element("xmp:CreateDate", xmpDate(description.created));
    text += element("xmp:ModifyDate", xmpDate(description.modified));
    if (pdfa)
        text += element("pdfaid:part", "1") + element("pdfaid:conformance", "B");
    return text + "</rdf:Description>\n</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>";
}

bool isUtf8BeyondAscii(const std::string &text)
{
    bool beyond = false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto lead = static_cast<unsigned char>(text[index]);
        if (lead < 0x80)
            continue;
        const std::size_t followers = followersOf(lead);
        if (followers == 0 || text.size() - index <= followers)
            return false;
        for (std::size_t follower = 1; follower <= followers; ++follower) {
            if ((static_cast<unsigned char>(text[index + follower]) & 0xC0) != 0x80)
                return false;
        }
        index += followers;
        beyond = true;
    }
    return beyond;
}

} // namespace engine
