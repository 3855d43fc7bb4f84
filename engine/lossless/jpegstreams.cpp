#include "jpegstreams.h"

#include "everystream.h"
#include "filterchain.h"
#include "formats/jpegrecoding.h"
#include "pdf/streams.h"

namespace engine {

namespace {

void recode(QPDF &document, QPDFObjectHandle stream)
{
    const std::vector<Layer> layers = layersOf(stream);
    const std::size_t outer = genericLayers(layers);
    if (outer + 1 != layers.size() || layers.back().filter != "/DCTDecode")
        return;
    const auto jpeg = bytesBelow(document, stream, outer);
    const auto better = jpeg ? recodedJpeg(*jpeg) : std::nullopt;
    if (better && (outer == 0 || better->size() < rawBytesOf(stream).size()))
        replaceBytes(stream, *better, {layers.back()});
}

} // namespace

void recodeJpegStreams(QPDF &document, const LosslessOptions &)
{
    forEveryStream(document, [&](QPDFObjectHandle stream) { recode(document, stream); });
}

} // namespace engine
