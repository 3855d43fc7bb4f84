#include "streams.h"

#include <algorithm>
#include <qpdf/Buffer.hh>

namespace engine {

namespace {

constexpr const char *genericFilters[] = {
    "/FlateDecode", "/LZWDecode", "/ASCII85Decode", "/ASCIIHexDecode", "/RunLengthDecode",
};

std::string textOf(const std::shared_ptr<Buffer> &buffer)
{
    return std::string(reinterpret_cast<const char *>(buffer->getBuffer()), buffer->getSize());
}

std::string nameOf(QPDFObjectHandle filter)
{
    return filter.isName() ? filter.getName() : std::string("?");
}

} // namespace

std::vector<std::string> filtersOf(QPDFObjectHandle stream)
{
    QPDFObjectHandle filter = stream.getDict().getKey("/Filter");
    std::vector<std::string> names;
    if (filter.isArray()) {
        for (const auto &one : filter.getArrayAsVector())
            names.push_back(nameOf(one));
    } else if (!filter.isNull()) {
        names.push_back(nameOf(filter));
    }
    return names;
}

bool isGeneric(const std::vector<std::string> &filters)
{
    return std::all_of(filters.begin(), filters.end(), [](const std::string &filter) {
        return std::find(std::begin(genericFilters), std::end(genericFilters), filter) !=
               std::end(genericFilters);
    });
}

std::string rawBytesOf(QPDFObjectHandle stream)
{
    return textOf(stream.getRawStreamData());
}

std::optional<std::string> decodedBytesOf(QPDFObjectHandle stream)
{
    if (!isGeneric(filtersOf(stream)))
        return {};
    try {
        return textOf(stream.getStreamData(qpdf_dl_specialized));
    } catch (const std::exception &) {
        return {};
    }
}

} // namespace engine
