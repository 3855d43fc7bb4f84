#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace engine {

/// A document as Ghostscript rewrote it as a whole, as PDF/A. Files are open descriptors.
struct RewritingOrder
{
    int document = -1;
    int rewriting = -1;           ///< as Ghostscript wrote it
    int copy = -1;                ///< open for reading and writing
    bool smallestBilevel = false; ///< bilevel images may become JBIG2
    bool compressFonts = true;
    std::map<std::string, std::string> marked = {}; ///< texts of the document information mark
    std::optional<int> pagesWritten = {};           ///< as Ghostscript's device counted them
    bool warned = false;                            ///< by Ghostscript itself
    std::uintmax_t leastSize = 0;
};

/// Repairs what Ghostscript is known to spoil, judges the rest, and writes the copy; its size.
/// Throws a std::exception that says why there is none. For hostile documents only to be called
/// where a crash or an endless loop does no harm.
std::uintmax_t writeRewriting(const RewritingOrder &order);

} // namespace engine
