#pragma once

#include "xmp/xmpedit.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace engine {

/// A document as Ghostscript rewrote it as a whole: as PDF/A, or because libqpdf can't open it.
/// Files are open descriptors.
struct RewritingOrder
{
    int document = -1;
    int rewriting = -1; ///< as Ghostscript wrote it
    int copy = -1;      ///< open for reading and writing
    int views = -1;     ///< for the views of the copy's pages
    bool pdfa = false;
    bool smallestBilevel = false; ///< bilevel images may become JBIG2
    bool compressFonts = true;
    std::map<std::string, std::string> marked = {}; ///< texts of the document information mark
    DescriptionChanges description = {};            ///< what the mark asks for, if it isn't PDF/A
    std::optional<int> pagesWritten = {};           ///< as Ghostscript's device counted them
    bool warned = false;                            ///< by Ghostscript itself
    std::uintmax_t leastSize = 0;
};

struct RewritingReport
{
    std::uintmax_t size = 0;
    bool described = false;   ///< the description has changed
    bool hasOwnFonts = true;  ///< the original leaves none to its readers, as far as is known
    bool maybeSigned = false; ///< an original that libqpdf can't open may be
    bool maybeLocked = false; ///< the same, with an encryption
};

/// Repairs what Ghostscript is known to spoil, judges the rest, and writes the copy, not encrypted.
/// Throws a std::exception that says why there is none. For hostile documents only to be called
/// where a crash or an endless loop does no harm.
RewritingReport writeRewriting(const RewritingOrder &order);

} // namespace engine
