#pragma once

#include <optional>
#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

/// The standard that a document says it keeps: "PDF/A-1", "PDF/A-3", "PDF/X-1a:2001", "PDF/E-1",
/// "PDF/UA-1", "PDF/VT-1", the strictest if there are several; nothing if it claims none. What it
/// is worth, nobody has looked at.
std::optional<std::string> claimedStandard(QPDF &document);

} // namespace engine
