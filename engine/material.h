#pragma once

namespace engine {

/// The open files of one run; -1 is none.
struct Material
{
    int document;
    int mark;
    int interpretation; ///< what Ghostscript makes
    int draft;          ///< the copy
};

} // namespace engine
