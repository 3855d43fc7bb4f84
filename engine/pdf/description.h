#pragma once

#include <map>
#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// Makes the document's information dictionary readable for everybody, and its XMP packet say the
/// same, with pdfa also that it is PDF/A-1b. The window hands the user's texts on as the bytes of
/// the locale, which no reader takes for UTF-8 by itself.
void settleDescription(QPDF &document, bool pdfa);

/// Gives a PDF/A copy the texts back that Ghostscript can't bring into XMP and drops: the mark's,
/// else the original's (null: none).
void restoreTexts(QPDF &copy, const std::map<std::string, std::string> &marked, QPDF *original);

/// Gives the document the copy's description in place of its own. What is incomplete keeps the
/// document's own where the copy has nothing. The copy has to live until the document is written.
void takeDescription(QPDF &document, QPDF &copy, bool complete);

} // namespace engine
