#pragma once

#include "xmp/xmpedit.h"

#include <qpdf/QPDF.hh>

namespace engine {

/// What a document information mark, the text of its PostScript file, asks of the copy's
/// description: a text for what has one, and an empty one for what is of blanks only. What is empty
/// in the mark leaves what the original says, and is not in it. Bytes that are UTF-8 are taken for
/// it, others for the encoding that PDF files have.
DescriptionChanges changesOfMark(const std::string &mark);

/// Whether the changes write something, rather than only blank it.
bool writesText(const DescriptionChanges &changes);

/// Makes the changes in the document's information dictionary and, if it has one, in its XMP
/// packet. False if that changes nothing.
bool applyChanges(QPDF &document, const DescriptionChanges &changes);

} // namespace engine
