#pragma once

#include "plan.h"
#include "settings.h"

namespace engine {

/// Makes the copy that the job asks for, or throws a Failure and leaves nothing.
/// signals::catchAll() must have been called.
void compress(const Job &job, const Settings &settings);

} // namespace engine
