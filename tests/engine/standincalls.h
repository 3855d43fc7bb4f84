#pragma once

#include <functional>
#include <map>
#include <string>
#include <sys/types.h>

/// Attempts at what a system offers beyond files and programs; some are made on another process,
/// whose number they take.
std::map<std::string, std::function<bool(pid_t)>> callAttempts();
