#include "landlock_linux.h"

#include "system/descriptor.h"

#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace engine {

namespace {

// The kernel's headers may be older than the kernel.
constexpr std::uint64_t truncateFile = 1ULL << 14;
constexpr std::uint64_t controlDevice = 1ULL << 15;
constexpr std::uint64_t bindTcp = 1ULL << 0;
constexpr std::uint64_t connectTcp = 1ULL << 1;
constexpr std::uint64_t abstractSockets = 1ULL << 0;
constexpr std::uint64_t signals = 1ULL << 1;

struct Attributes
{
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

constexpr std::uint64_t readRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t executeRights = readRights | LANDLOCK_ACCESS_FS_EXECUTE;
constexpr std::uint64_t writeRights =
    LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | truncateFile;
constexpr std::uint64_t folderRights = writeRights | LANDLOCK_ACCESS_FS_READ_DIR |
                                       LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_REMOVE_FILE;
constexpr std::uint64_t fileRights =
    (executeRights | writeRights) & ~std::uint64_t(LANDLOCK_ACCESS_FS_READ_DIR);

long kernelVersion()
{
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

// Everything that the kernel's version of Landlock can forbid.
Attributes attributesFor(long version)
{
    Attributes attributes = {};
    attributes.files = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
    if (version >= 2)
        attributes.files |= LANDLOCK_ACCESS_FS_REFER;
    if (version >= 3)
        attributes.files |= truncateFile;
    if (version >= 4)
        attributes.network = bindTcp | connectTcp;
    if (version >= 5)
        attributes.files |= controlDevice;
    if (version >= 6)
        attributes.scopes = abstractSockets | signals;
    return attributes;
}

std::size_t sizeFor(long version)
{
    if (version < 4)
        return sizeof(std::uint64_t);
    return version < 6 ? 2 * sizeof(std::uint64_t) : sizeof(Attributes);
}

class Rules
{
public:
    explicit Rules(long version)
        : m_attributes(attributesFor(version))
        , m_set(int(syscall(SYS_landlock_create_ruleset, &m_attributes, sizeFor(version), 0)))
    {
    }

    void allow(int file, std::uint64_t rights)
    {
        struct stat entry = {};
        if (fstat(file, &entry) != 0)
            return;
        rights &= m_attributes.files;
        if (!S_ISDIR(entry.st_mode))
            rights &= fileRights;
        const landlock_path_beneath_attr rule = {rights, file};
        syscall(SYS_landlock_add_rule, m_set.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    }

    void allow(const std::string &path, std::uint64_t rights)
    {
        const Descriptor file(open(path.c_str(), O_PATH | O_CLOEXEC));
        if (file)
            allow(file.get(), rights);
    }

    [[nodiscard]] bool enforce() const
    {
        return m_set && syscall(SYS_landlock_restrict_self, m_set.get(), 0) == 0;
    }

private:
    Attributes m_attributes;
    Descriptor m_set;
};

} // namespace

std::string confineFiles(const AccessPolicy &policy)
{
    const long version = kernelVersion();
    if (version < 1)
        return "no file rules (the kernel has no Landlock)";
    Rules rules(version);
    for (const std::string &path : policy.readable)
        rules.allow(path, readRights);
    for (const std::string &path : policy.executable)
        rules.allow(path, executeRights);
    for (const std::string &path : policy.writableFolders)
        rules.allow(path, folderRights);
    for (const int file : policy.readableDescriptors)
        rules.allow(file, readRights);
    for (const int file : policy.writableDescriptors)
        rules.allow(file, writeRights);
    rules.allow(policy.program, executeRights);
    if (!rules.enforce())
        return "no file rules (the kernel's Landlock is off)";
    return "file rules (Landlock " + std::to_string(version) + ")";
}

} // namespace engine
