#pragma once

#include "files/privatefolder.h"
#include "process/child.h"
#include "request/request.h"
#include "settings.h"

#include <functional>

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

} // namespace engine
