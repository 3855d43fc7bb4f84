#pragma once

#include "files/privatefolder.h"
#include "process/child.h"
#include "request/request.h"
#include "settings.h"

#include <functional>
#include <string>

namespace engine {

/// What one run of corvgs works with; files are open descriptors, -1 is none.
struct Run
{
    const Request &request;
    const Settings &settings;
    const PrivateFolder &folder;
    Children &children;
    int document;
    int mark;
    int draft; ///< becomes the copy

    /// A new file without a name, on the disk that takes the copy.
    std::function<Descriptor()> newFile;
};

/// The text of the document information mark; empty without one. Throws a Failure if it is longer
/// than 1 MiB.
std::string markText(const Run &run);

} // namespace engine
