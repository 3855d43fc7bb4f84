#pragma once

#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

namespace engine {

/// One filter of a stream with its parameters (null: none).
struct Layer
{
    std::string filter;
    QPDFObjectHandle parameters;
};

/// The filters of a stream, the outermost first.
std::vector<Layer> layersOf(QPDFObjectHandle stream);

/// How many of the outermost layers are for bytes of any kind.
std::size_t genericLayers(const std::vector<Layer> &layers);

/// The bytes of a stream without its outermost layers; of the last of those, only a predictor stays
/// on the bytes. Nothing if they are damaged, not generic, or too many.
std::optional<std::string> bytesBelow(QPDF &document, QPDFObjectHandle stream, std::size_t count);

/// The predictor that these parameters ask for, and nothing else of them; null if they ask for
/// none.
QPDFObjectHandle predictorOf(QPDFObjectHandle parameters);

/// Gives a stream other bytes, in these layers.
void replaceBytes(QPDFObjectHandle stream, const std::string &bytes,
                  const std::vector<Layer> &layers);

/// What a stream takes in the file apart from its bytes, as far as its layers count.
std::size_t sizeOfEntries(const std::vector<Layer> &layers);

} // namespace engine
