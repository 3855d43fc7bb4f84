#include "claim.h"

#include "pdf/streams.h"
#include "xmp/xmpclaim.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

// Where PDF/X was claimed before XMP.
std::optional<std::string> claimedInInformation(QPDF &document)
{
    QPDFObjectHandle information = document.getTrailer().getKey("/Info");
    QPDFObjectHandle version = information.isDictionary() ? information.getKey("/GTS_PDFXVersion")
                                                          : QPDFObjectHandle::newNull();
    return version.isString() ? std::optional(version.getUTF8Value()) : std::nullopt;
}

} // namespace

std::optional<std::string> claimedStandard(QPDF &document)
{
    QPDFObjectHandle metadata = document.getRoot().getKey("/Metadata");
    const auto packet = metadata.isStream() ? decodedBytesOf(metadata) : std::nullopt;
    auto claim = packet ? claimInPacket(*packet) : std::nullopt;
    return claim ? claim : claimedInInformation(document);
}

} // namespace engine
