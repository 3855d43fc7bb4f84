#include "packet.h"

#include "filterchain.h"
#include "formats/deflate.h"
#include "pdf/streams.h"
#include "xmp/xmptrimming.h"

namespace engine {

namespace {

bool claimsPdfa(const LosslessOptions &options)
{
    return options.standard && options.standard->rfind("PDF/A", 0) == 0;
}

void replace(QPDFObjectHandle metadata, const std::string &packet)
{
    if (layersOf(metadata).empty())
        replaceBytes(metadata, packet, {});
    else
        replaceBytes(metadata, deflated(packet), {{"/FlateDecode", QPDFObjectHandle::newNull()}});
}

} // namespace

void trimPacket(QPDF &document, const LosslessOptions &options)
{
    QPDFObjectHandle metadata = document.getRoot().getKey("/Metadata");
    const auto packet = metadata.isStream() ? decodedBytesOf(metadata) : std::nullopt;
    if (!packet)
        return;
    const auto history = claimsPdfa(options) ? History::Kept : History::Dropped;
    if (const auto trimmed = trimmedPacket(*packet, history))
        replace(metadata, *trimmed);
}

} // namespace engine
