#include "failure.h"

#include <algorithm>
#include <cstring>

namespace engine {

Failure::Failure(const std::string &reason, int status)
    : std::runtime_error(onOneLine(reason))
    , m_status(status)
{
}

Failure Failure::ofSystem(const std::string &what, int error, int status)
{
    return Failure(what + ": " + std::strerror(error), status);
}

std::string onOneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char letter) { return letter < 0x20; }, '?');
    return text;
}

} // namespace engine
