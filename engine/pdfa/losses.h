#pragma once

#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// What the copy has less of than the original, of what a reader can use but not see: "links",
/// "form fields", "comments" and the like. Empty if nothing is lost.
std::string lossOf(QPDF &original, QPDF &copy);

/// What Ghostscript spoils wherever a document has it; empty if it has nothing of the kind.
std::string unsupportedFeature(QPDF &original);

std::size_t linksOf(QPDF &document);

/// The number of files that a document carries, by name, on its pages or with a part of it.
std::size_t attachmentsOf(QPDF &document);

} // namespace engine
