#pragma once

#include "settings.h"

#include <QString>

/// The settings as switches of Ghostscript's pdfwrite device.
///
/// Every function returns pieces that each begin with one blank, so that results are joined by
/// concatenation; a page that is switched off gives an empty string. Values are neither quoted nor
/// escaped nor checked: an index outside its table takes the table's last row, and any text is
/// passed on as it stands. The values come from engineValues(); a missing one counts as empty.
namespace core {

/// All of them, in the order of the functions below.
QString engineSwitches(const Values &values);

/// The switches that no setting changes.
QString baseSwitches();

/// Downsampling, resolution and filter of colour, gray and monochrome images.
QString imageSwitches(const Values &values);

/// Embedding, compression and subsetting of fonts.
QString fontSwitches(const Values &values);

/// Passwords and permissions.
QString securitySwitches(const Values &values);

/// " -dPDFA" or nothing.
QString pdfaSwitches(const Values &values);

} // namespace core
