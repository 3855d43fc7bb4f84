#pragma once

#include "process/limits.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace engine {

/// The programs of the independent reader, as paths; empty: it isn't there.
struct ReaderPrograms
{
    std::string texts = {};    ///< pdftotext
    std::string pictures = {}; ///< pdftoppm
};

/// What the reader may use up, in one process.
struct ReaderLimits
{
    std::uintmax_t memory = std::uintmax_t(4) << 30; ///< bytes of address space
    std::uintmax_t text = std::uintmax_t(256) << 20; ///< bytes of a document's text
    std::chrono::seconds time{120};                  ///< of the processor
};

struct Settings
{
    std::string ghostscript; ///< path of the executable
    Limits limits = {};
    ReaderPrograms readers = {};
    ReaderLimits readerLimits = {};
};

} // namespace engine
