#pragma once

#include <qpdf/QPDF.hh>
#include <set>
#include <string>

namespace engine {

/// The fonts (identityOf) that a reader may need for text that is not there yet: those that the
/// default resources of a form name, those of the appearances of fields and of free text, and
/// those that a default appearance calls by name.
std::set<std::string> fontsOfFields(QPDF &document);

} // namespace engine
