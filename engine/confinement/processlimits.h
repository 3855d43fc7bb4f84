#pragma once

#include <chrono>
#include <cstdint>

namespace engine {

/// From now on the process, and what it becomes, is ended when it has burnt so much processor time.
void limitProcessorTime(std::chrono::seconds time);

/// From now on the process, and what it becomes, is ended when a file that it writes would get
/// longer than so many bytes.
void limitFileSize(std::uintmax_t bytes);

/// From now on the process, and what it becomes, gets no descriptor of that number or a higher one;
/// those that are open stay.
void limitDescriptors(int number);

} // namespace engine
