#pragma once

#include <string>

namespace engine {

/// The descriptors that a child of corvgs finds open. Ghostscript names files as /dev/fd/N, so no
/// name that a user chose, whatever letters it has, is ever read as Ghostscript's syntax.
enum Channel : int {
    draftChannel = 3,             ///< what the child makes, read and write
    documentChannel = 4,          ///< the original
    markChannel = 5,              ///< the document information mark
    indexChannel = 6,             ///< which image each page of the album shows
    reportChannel = 7,            ///< a pipe for what a child has to say to corvgs alone
    ghostscriptOutputChannel = 9, ///< what Ghostscript made
    originalReadingChannel = 10,  ///< what a reader made of the original
    copyReadingChannel = 11,      ///< what a reader made of the draft
    touchedChannel = 12,          ///< the parts of a draft that were made smaller
    viewsChannel = 13,            ///< how a reader shows the pages
    firstFreeChannel = 14,

    /// The executable that the child becomes, closed when it starts. Far from the others: no
    /// descriptor that the program opens may ever have this number (limitDescriptors).
    programChannel = 200,
};

inline std::string nameOf(Channel channel)
{
    return "/dev/fd/" + std::to_string(channel);
}

} // namespace engine
