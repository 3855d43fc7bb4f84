#pragma once

#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// What the copy has less of than the original, of what a reader can use but not see: "links",
/// "form fields", "outline entries", "attachments". Empty if nothing is lost.
std::string lossOf(QPDF &original, QPDF &copy);

std::size_t linksOf(QPDF &document);

/// The number of files that a document carries.
std::size_t attachmentsOf(QPDF &document);

} // namespace engine
