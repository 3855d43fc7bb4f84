#pragma once

#include <QPalette>

/// The palette of a desktop with a dark theme.
QPalette darkDesktop();
