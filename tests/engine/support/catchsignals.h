#pragma once

/// engine::signals::catchAll(), whose name space is a word of Qt's.
void catchSignals();
