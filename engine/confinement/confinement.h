#pragma once

#include <string>
#include <vector>

namespace engine {

/// All that a confined process can reach. What doesn't exist is left out.
struct AccessPolicy
{
    std::vector<std::string> readable;        ///< files, and folders with all below them
    std::vector<std::string> executable;      ///< files, and folders with all below them
    std::vector<int> readableDescriptors;     ///< of files
    std::vector<int> writableDescriptors;     ///< of files, read and write
    std::vector<std::string> writableFolders; ///< files may be made, written and removed in them
    int program = -1;          ///< the descriptor of the one program that may be started; -1: none
    bool morePrograms = false; ///< whatever is executable may be started, any number of times
};

/// Confines this process and what it becomes, for good, as far as the system can. Its limits can't
/// be changed any more; one that starts no program may do little more than compute, and read and
/// write what is open. Returns what is
/// in force, in one line of English; where that is less than everything the process runs all the
/// same.
std::string confine(const AccessPolicy &policy);

} // namespace engine
