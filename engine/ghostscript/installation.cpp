#include "installation.h"

#include "system/programs.h"

#include <filesystem>

namespace engine {

namespace {

namespace fs = std::filesystem;

// Below each prefix of installed software.
constexpr const char *installed[] = {
    "lib",         "lib32",       "lib64",         "libx32",         "share/ghostscript",
    "share/fonts", "share/color", "share/poppler", "share/texmf",    "share/fontconfig",
    "share/X11",   "share/cups",  "share/locale",  "share/zoneinfo",
};
constexpr const char *system[] = {
    "/lib",
    "/lib32",
    "/lib64",
    "/libx32",
    "/etc/fonts",
    "/etc/ghostscript",
    "/etc/ld.so.cache",
    "/etc/ld.so.preload",
    "/etc/localtime",
    "/etc/papersize",
    "/etc/paperspecs",
    "/var/lib/ghostscript",
    "/var/cache/fontconfig",
    "/dev/null",
    "/dev/urandom",
    "/sys/devices/system/cpu",
};
constexpr const char *fontsAtHome[] = {
    ".fonts", ".fonts.conf", ".config/fontconfig", ".local/share/fonts", ".cache/fontconfig",
};

} // namespace

std::string findGhostscript(const std::string &configured)
{
    return findProgram(configured, "gs");
}

std::vector<std::string> systemFilesOf(const std::string &ghostscript, const std::string &home)
{
    std::vector<std::string> files(std::begin(system), std::end(system));
    std::error_code ignored;
    const fs::path own = fs::weakly_canonical(ghostscript, ignored).parent_path().parent_path();
    for (const fs::path &prefix : {fs::path("/usr"), fs::path("/usr/local"), own}) {
        for (const char *folder : installed) {
            if (prefix.has_relative_path())
                files.push_back(prefix / folder);
        }
    }
    for (const char *folder : fontsAtHome) {
        if (!home.empty())
            files.push_back(home + "/" + folder);
    }
    return files;
}

} // namespace engine
