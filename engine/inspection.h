#pragma once

#include "judgement.h"
#include "limits.h"
#include "material.h"

#include <string>

namespace engine {

/// The pages of the document and of the draft, counted in a process that can reach neither anything
/// else nor corvgs, because the document may be made to break its reader. pagesWritten stays empty.
Evidence inspect(const Material &material, const std::string &password, const Limits &limits);

} // namespace engine
