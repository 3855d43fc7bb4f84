#pragma once

#include "request/request.h"
#include "tasks/settings.h"

namespace engine {

/// Makes the copy that the request asks for, or throws a Failure and leaves nothing.
/// signals::catchAll() must have been called.
void compress(const Request &request, const Settings &settings);

} // namespace engine
