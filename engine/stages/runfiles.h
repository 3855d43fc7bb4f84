#pragma once

namespace engine {

/// The open files of one run; -1 is none.
struct RunFiles
{
    int document;
    int mark;
    int ghostscriptOutput; ///< what Ghostscript makes
    int draft;             ///< the copy
};

} // namespace engine
