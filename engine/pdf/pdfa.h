#pragma once

#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// Why a document that Ghostscript wrote as PDF/A is none; empty if nothing speaks against it.
/// Ghostscript sees to nearly everything; this is what it is known to let through.
std::string pdfaObjection(QPDF &document);

/// Whether the document leaves it to the reader to have a font for thousands of letters. What is
/// embedded in its place is another font, often without the letters.
bool needsForeignFonts(QPDF &original);

/// Takes out what PDF/A-1b allows and validators stumble on: a base encoding of a Type 3 font,
/// whose names mean nothing where the font itself defines its glyphs.
void settlePdfa(QPDF &document);

} // namespace engine
