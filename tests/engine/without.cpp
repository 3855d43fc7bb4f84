// Runs a program on a system that lacks something:
//
//   corvane_without landlock PROGRAM ARGUMENT...
//   corvane_without unnamed-files PROGRAM ARGUMENT...
//
// Status 99 if it can't be taken away.

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
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
                            SCMP_A2(SCMP_CMP_MASKED_EQ, O_TMPFILE, O_TMPFILE)) == 0;
}

bool takeAway(std::string_view what)
{
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    const bool known = what == "landlock" ? denyLandlock(filter)
                                          : what == "unnamed-files" && denyUnnamedFiles(filter);
    return known && seccomp_load(filter) == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 3 || !takeAway(argv[1]))
        return 99;
    execv(argv[2], argv + 2);
    return 99;
}
