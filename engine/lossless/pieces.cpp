#include "pieces.h"

#include "duplicates.h"
#include "jpegstreams.h"
#include "leftovers.h"
#include "packet.h"
#include "streamcoding.h"
#include "unusednames.h"

#include <qpdf/QPDFExc.hh>

namespace engine {

const std::vector<Piece> &losslessPieces()
{
    // Pieces that remove objects run first, because what is gone need not be compared; equal parts
    // are merged before they are coded, because then they are coded once. Few streams are equal
    // only after they are coded alike, so nothing is merged again at the end.
    static const std::vector<Piece> pieces = {
        {"leftovers", dropLeftovers},      {"packet", trimPacket},
        {"unused names", dropUnusedNames}, {"equal parts", mergeEqualParts},
        {"jpeg", recodeJpegStreams},       {"streams", recodeStreams},
    };
    return pieces;
}

void applyPiece(const Piece &piece, QPDF &document, const LosslessOptions &options)
{
    try {
        piece.apply(document, options);
    } catch (const QPDFExc &) {
        // What can't be read stays as it is.
    }
}

void applyPieces(QPDF &document, const LosslessOptions &options)
{
    for (const Piece &piece : losslessPieces())
        applyPiece(piece, document, options);
}

} // namespace engine
