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

/// When a piece runs.
enum class Stage {
    BeforeParts, ///< before images and fonts are made smaller: it makes that work less
    AfterParts   ///< after it: it is for what they have become, too
};

/// One way in which a document becomes smaller, and nothing else.
struct Piece
{
    const char *name;
    void (*apply)(QPDF &document, const LosslessOptions &options);
    Stage stage = Stage::AfterParts;
};

/// In the order in which they run.
const std::vector<Piece> &losslessPieces();

/// Runs one of them. What it can't read of the document stays as it is.
void applyPiece(const Piece &piece, QPDF &document, const LosslessOptions &options);

/// Runs those of one stage.
void applyPieces(QPDF &document, const LosslessOptions &options, Stage stage);

} // namespace engine
