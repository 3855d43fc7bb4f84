#pragma once

#include <string>

namespace engine {

/// A document's description; texts in UTF-8. An empty text is one that isn't there.
struct Description
{
    std::string title;
    std::string author;
    std::string subject;
    std::string keywords;
    std::string creator;
    std::string producer;
    std::string created;  ///< as in an information dictionary: "D:20240131235959+01'00'"
    std::string modified; ///< the same
};

/// A date of an information dictionary as XMP writes it: "2024-01-31T23:59:59+01:00"; empty if it
/// is none.
std::string xmpDate(const std::string &date);

/// The XMP packet that says the same as the information dictionary. With pdfa it says, too, that
/// the document is PDF/A-1b.
std::string xmpPacket(const Description &description, bool pdfa);

/// The text, in UTF-8, with a blank for what XML can't hold: control characters, halves of
/// surrogate pairs, U+FFFE and U+FFFF.
std::string writableInXml(const std::string &text);

/// Whether the text is in UTF-8 and has letters beyond ASCII.
bool isUtf8BeyondAscii(const std::string &text);

} // namespace engine
