#include "streams.h"

#include <algorithm>
#include <qpdf/Buffer.hh>
#include <qpdf/Pipeline.hh>
#include <stdexcept>

namespace engine {

namespace {

constexpr const char *genericFilters[] = {
    "/FlateDecode", "/LZWDecode", "/ASCII85Decode", "/ASCIIHexDecode", "/RunLengthDecode",
};

std::string textOf(const std::shared_ptr<Buffer> &buffer)
{
    return std::string(reinterpret_cast<const char *>(buffer->getBuffer()), buffer->getSize());
}

// A few bytes can stand for gibibytes.
class Bytes : public Pipeline
{
public:
    explicit Bytes(std::size_t most)
        : Pipeline("bytes", nullptr)
        , m_most(most)
    {
    }

    void write(unsigned char const *data, std::size_t count) override
    {
        if (count > m_most - m_bytes.size())
            throw std::length_error("too many bytes");
        m_bytes.append(reinterpret_cast<const char *>(data), count);
    }
    void finish() override {}

    std::string take() { return std::move(m_bytes); }

private:
    std::size_t m_most;
    std::string m_bytes;
};

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

std::optional<std::string> decodedBytesOf(QPDFObjectHandle stream, std::size_t most)
{
    if (!isGeneric(filtersOf(stream)))
        return {};
    try {
        Bytes bytes(most);
        bool filtered = false;
        // Of filters with parameters that it doesn't know, libqpdf gives the bytes as they lie.
        if (!stream.pipeStreamData(&bytes, &filtered, 0, qpdf_dl_specialized, true) || !filtered)
            return {};
        return bytes.take();
    } catch (const std::exception &) {
        return {};
    }
}

} // namespace engine
