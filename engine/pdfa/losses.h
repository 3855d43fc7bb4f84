#pragma once

#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// What the copy has less of than the original, of what has to stay and is not seen on the pages:
/// "links" or "outline entries". Empty if nothing is lost.
std::string lossOf(QPDF &copy, QPDF &original);

/// What the document has that Ghostscript 10.00 spoils in a rewriting, such as "conditions on
/// layers"; empty if it has nothing of the kind.
std::string unsupportedFeature(QPDF &original);

std::size_t linksOf(QPDF &document);

/// The number of files that a document carries, by name, on its pages or with a part of it.
std::size_t attachmentsOf(QPDF &document);

} // namespace engine
