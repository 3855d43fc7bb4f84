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
    // What goes need not be compared, and what is there once need not be coded twice. Streams that
    // are equal only when they are coded in one way are so few that nobody looks for them.
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
