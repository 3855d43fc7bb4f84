#pragma once

#include <string_view>

namespace engine {

/// What Ghostscript says and ends with status 0 all the same (seen in 10.00.0).
/// Of what it wrote:
inline constexpr std::string_view ghostscriptWarning = "may be incorrect";

/// Of a disk that was full, for the copy or for its temporary files, at whatever write; the copy
/// then lacks fonts, or its end:
inline constexpr std::string_view ghostscriptWriteError = "on closing pdfwrite device";

} // namespace engine
