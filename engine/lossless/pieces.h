#pragma once

#include <optional>
#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

namespace engine {

struct LosslessOptions
{
    std::optional<std::string> standard; ///< that the original claims: "PDF/A-1", "PDF/X", ...
    bool compressFonts = true;           ///< also font programs that were not compressed
};

/// One way in which a document becomes smaller, and nothing else.
struct Piece
{
    const char *name;
    void (*apply)(QPDF &document, const LosslessOptions &options);
};

/// In the order in which they run: after images and fonts have become smaller, because they are for
/// what those have become, too.
const std::vector<Piece> &losslessPieces();

/// Runs one of them. What it can't read of the document stays as it is.
void applyPiece(const Piece &piece, QPDF &document, const LosslessOptions &options);

/// Runs all of them.
void applyPieces(QPDF &document, const LosslessOptions &options);

} // namespace engine
