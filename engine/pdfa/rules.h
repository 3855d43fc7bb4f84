#pragma once

#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// Why a document that Ghostscript was to write as PDF/A is none; empty if it says that it is one.
std::string claimObjection(QPDF &document);

/// What a document has that PDF/A-1b forbids; empty if it has nothing of the kind. Ghostscript sees
/// to nearly everything; this is what it is known to let through.
std::string brokenPdfaRule(QPDF &document);

/// Whether the document leaves it to the reader to have a font for thousands of letters. What is
/// embedded in its place is another font, often without the letters.
bool needsForeignFonts(QPDF &original);

/// Whether a described font is not embedded. Readers take one of theirs for it, each another, and
/// so does Ghostscript when it embeds one.
bool leavesFontsToReaders(QPDF &original);

/// Takes out what Ghostscript leaves in: an annotation's other looks, and a Type 3 font's base
/// encoding, whose names mean nothing where the font itself defines its glyphs. A note's sign keeps
/// its size and its direction.
void settlePdfa(QPDF &document);

} // namespace engine
