#pragma once

#include <optional>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

namespace engine {

/// The names of a stream's filters, the outermost first; what is no name is one that nobody knows.
std::vector<std::string> filtersOf(QPDFObjectHandle stream);

/// Whether all of the filters are for bytes of any kind, and lose nothing.
bool isGeneric(const std::vector<std::string> &filters);

/// A stream's bytes as they lie in the file, decrypted.
std::string rawBytesOf(QPDFObjectHandle stream);

/// The bytes of one stream that are ever held: a bitmap's, at most.
inline constexpr std::size_t mostBytes = std::size_t(256) << 20;

/// A stream's bytes without its generic filters; nothing if it has others, is damaged, or stands
/// for more than so many bytes.
std::optional<std::string> decodedBytesOf(QPDFObjectHandle stream, std::size_t most = mostBytes);

} // namespace engine
