// Runs a program on a system that lacks something:
//
//   corvane_without landlock PROGRAM ARGUMENT...
//   corvane_without unnamed-files PROGRAM ARGUMENT...
//   corvane_without sound-disk PROGRAM ARGUMENT...
//
// Status 99 if it can't be taken away.

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <seccomp.h>
#include <string_view>
#include <unistd.h>

namespace {

bool denyLandlock(scmp_filter_ctx filter)
{
    return seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS),
                            seccomp_syscall_resolve_name("landlock_create_ruleset"), 0) == 0;
}

bool denyUnnamedFiles(scmp_filter_ctx filter)
{
    return seccomp_rule_add(filter, SCMP_ACT_ERRNO(EOPNOTSUPP), SCMP_SYS(openat), 1,
                            scmp_arg_cmp{2, SCMP_CMP_MASKED_EQ, O_TMPFILE, O_TMPFILE}) == 0;
}

bool denySaving(scmp_filter_ctx filter)
{
    return seccomp_rule_add(filter, SCMP_ACT_ERRNO(EIO), SCMP_SYS(fsync), 0) == 0;
}

bool takeAway(std::string_view what)
{
    const std::map<std::string_view, bool (*)(scmp_filter_ctx)> ways = {
        {"landlock", denyLandlock},
        {"unnamed-files", denyUnnamedFiles},
        {"sound-disk", denySaving},
    };
    const auto way = ways.find(what);
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    return way != ways.end() && way->second(filter) && seccomp_load(filter) == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 3 || !takeAway(argv[1]))
        return 99;
    execv(argv[2], argv + 2);
    return 99;
}
