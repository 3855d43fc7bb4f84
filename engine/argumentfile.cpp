#include "argumentfile.h"

namespace engine {

namespace {

// Ghostscript knows one escape, \", and no other meaning of a backslash. What keeps one at the end
// from escaping the closing quote is a NUL, which ends the argument.
std::string quoted(const std::string &argument)
{
    std::string text = "\"";
    for (const char letter : argument) {
        if (letter == '"')
            text += '\\';
        text += letter;
    }
    if (argument.ends_with('\\'))
        text += '\0';
    return text + '"';
}

} // namespace

std::string argumentFileText(const std::vector<std::string> &arguments)
{
    std::string text;
    for (const std::string &argument : arguments)
        text += quoted(argument) + '\n';
    return text;
}

} // namespace engine
