#pragma once

#include <cstdio> // jpeglib.h takes it for granted
#include <vector>

extern "C" {
#include <jpeglib.h>
}

namespace engine {

/// The scans of a progressive JPEG with all the coefficients of the one that was read. Empty: it
/// has more components than a scan can.
std::vector<jpeg_scan_info> progressiveScans(const jpeg_decompress_struct &reader);

} // namespace engine
