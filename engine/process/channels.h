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
    programChannel = 8,           ///< Ghostscript's executable, closed when it starts
    ghostscriptOutputChannel = 9, ///< what Ghostscript made
    originalReadingChannel = 10,  ///< what a reader made of the original
    copyReadingChannel = 11,      ///< what a reader made of the draft
    touchedChannel = 12,          ///< the parts of a draft that were made smaller
    viewsChannel = 13,            ///< how a reader shows the pages
    firstFreeChannel = 14,
};

inline std::string nameOf(Channel channel)
{
    return "/dev/fd/" + std::to_string(channel);
}

} // namespace engine
