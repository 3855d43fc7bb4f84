#pragma once

#include <map>
#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// The bytes of a text as UTF-8 that XML can hold: taken for UTF-8 if they are, else for one of the
/// encodings that PDF files have.
std::string readableText(const std::string &bytes);

/// Makes the document's information dictionary readable for everybody, and its XMP packet say the
/// same, with pdfa also that it is PDF/A-1b. The window hands the user's texts on as the bytes of
/// the locale, which no reader takes for UTF-8 by itself.
void settleDescription(QPDF &document, bool pdfa);

/// Gives the copy those entries of the original's information dictionary that programs have made up
/// for themselves.
void restoreOwnEntries(QPDF &copy, QPDF &original);

/// Gives the copy the producer of the mark, if it names one: Ghostscript names itself whatever it
/// is told.
void markProducer(QPDF &copy, const std::map<std::string, std::string> &marked);

/// Gives a PDF/A copy the texts back that Ghostscript can't bring into XMP and drops: the mark's,
/// else the original's (null: none).
void restoreTexts(QPDF &copy, const std::map<std::string, std::string> &marked, QPDF *original);

/// Adds the copy's description to the document's own, in place of what both have. The copy has to
/// live until the document is written.
void takeDescription(QPDF &document, QPDF &copy);

} // namespace engine
