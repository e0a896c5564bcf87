// SPDX-License-Identifier: MIT
//
// Part of our build of the recogniser, see the patches beside it. A recording, a model and a command line are
// all that it reads, and all of them come from outside; whoever finds a flaw in how it reads them shall gain
// nothing by it.

#include "Confinement.h"

#include "landlock.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <linux/audit.h>
#include <linux/seccomp.h>

namespace talvera::confinement {

namespace {

/// Programs that start the recogniser look for this in its file before they hand a prompt over as a
/// descriptor.
[[gnu::used]] constexpr char mark[] = "talvera: takes --prompt /dev/fd/N";

/// What can't be opened isn't there, which the recogniser itself will tell.
void allow(int ruleset, const std::string& path, std::uint64_t rights) {
    const int descriptor = ::open(path.c_str(), O_PATH | O_CLOEXEC);
    if (descriptor < 0)
        return;
    const landlock::PathRule rule{rights, descriptor};
    ::syscall(landlock::addRule, ruleset, landlock::ruleBeneathPath, &rule, 0);
    ::close(descriptor);
}

std::string directoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

constexpr sock_filter statement(unsigned code, std::uint32_t value) {
    return {static_cast<std::uint16_t>(code), 0, 0, value};
}

constexpr sock_filter jumpIfEqual(std::uint32_t value, unsigned ifSo, unsigned ifNot) {
    return {BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint8_t>(ifSo), static_cast<std::uint8_t>(ifNot),
            value};
}

constexpr sock_filter jumpIfAnyBit(std::uint32_t bits, unsigned ifSo, unsigned ifNot) {
    return {BPF_JMP | BPF_JSET | BPF_K, static_cast<std::uint8_t>(ifSo), static_cast<std::uint8_t>(ifNot),
            bits};
}

constexpr sock_filter load(std::size_t offset) {
    return statement(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
}

constexpr sock_filter refuseWith(int error) {
    return statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error));
}

constexpr sock_filter allowed = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);

constexpr std::size_t argument(int index) {
    return offsetof(seccomp_data, args) + static_cast<std::size_t>(index) * sizeof(std::uint64_t);
}

// Files (which of them, the other half says), memory, threads, time. Everything else is answered as by a
// kernel that has never heard of it, so that a newer C library falls back to what it did before.
constexpr std::array allowedCalls = {
    SYS_read,
    SYS_readv,
    SYS_pread64,
    SYS_write,
    SYS_writev,
    SYS_pwrite64,
    SYS_lseek,
    SYS_open,
    SYS_openat,
    SYS_close,
    SYS_fstat,
    SYS_stat,
    SYS_lstat,
    SYS_newfstatat,
    SYS_statx,
    SYS_access,
    SYS_faccessat,
    SYS_readlink,
    SYS_readlinkat,
    SYS_getcwd,
    SYS_getdents64,
    SYS_fcntl,
    SYS_ftruncate,
    SYS_fadvise64,
    SYS_poll,
    SYS_ppoll,
    SYS_munmap,
    SYS_mremap,
    SYS_madvise,
    SYS_brk,
    SYS_membarrier,
    SYS_futex,
    SYS_set_robust_list,
    SYS_rseq,
    SYS_set_tid_address,
    SYS_gettid,
    SYS_getpid,
    SYS_sched_yield,
    SYS_sched_getaffinity,
    SYS_sched_setaffinity,
    SYS_sched_getparam,
    SYS_sched_getscheduler,
    SYS_exit,
    SYS_exit_group,
    SYS_restart_syscall,
    SYS_getcpu,
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_sigaltstack,
    SYS_clock_gettime,
    SYS_clock_getres,
    SYS_clock_nanosleep,
    SYS_nanosleep,
    SYS_gettimeofday,
    SYS_time,
    SYS_getrandom,
    SYS_uname,
    SYS_sysinfo,
    SYS_getrusage,
    SYS_getrlimit,
};

} // namespace

void keepMemoryPrivate() {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0);
}

std::optional<std::string> promptOf(const std::string& value) {
    const std::string prefix = "/dev/fd/";
    if (value.compare(0, prefix.size(), prefix) != 0)
        return value;
    int descriptor = -1;
    const auto* end = value.data() + value.size();
    const auto number = std::from_chars(value.data() + prefix.size(), end, descriptor);
    if (number.ec != std::errc() || number.ptr != end)
        return std::nullopt;
    std::string prompt;
    std::array<char, 4096> piece;
    ssize_t count = 0;
    while ((count = ::read(descriptor, piece.data(), piece.size())) > 0 || (count < 0 && errno == EINTR)) {
        if (count > 0)
            prompt.append(piece.data(), static_cast<std::size_t>(count));
    }
    ::close(descriptor);
    return count == 0 ? std::optional(prompt) : std::nullopt;
}

std::uint64_t fileRights(int version) {
    std::uint64_t rights = landlock::firstRights;
    if (version >= 2)
        rights |= landlock::referToOther;
    if (version >= 3)
        rights |= landlock::truncateFile;
    if (version >= 5)
        rights |= landlock::controlDevice;
    return rights;
}

bool confineFiles(const NeededFiles& files) {
    using namespace landlock;
    const auto version = static_cast<int>(::syscall(createRuleset, nullptr, 0, askForVersion));
    if (version < 1)
        return false;
    const Ruleset ruleset{fileRights(version), bindAndConnect, abstractSocketsAndSignals};
    const auto descriptor = static_cast<int>(::syscall(createRuleset, &ruleset, rulesetSize(version), 0));
    if (descriptor < 0)
        return false;
    for (const auto& path : files.read)
        allow(descriptor, path, readFile);
    for (const auto& path : files.written)
        allow(descriptor, directoryOf(path), (writeFile | makeFile | truncateFile) & ruleset.files);
    const bool done =
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::syscall(restrictSelf, descriptor, 0) == 0;
    ::close(descriptor);
    return done;
}

std::vector<sock_filter> callFilter() {
    std::vector<sock_filter> filter = {
        load(offsetof(seccomp_data, arch)),
        jumpIfEqual(AUDIT_ARCH_X86_64, 1, 0),
        statement(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS), // no call that a program of this kind can make
        load(offsetof(seccomp_data, nr)),
    };
    for (const auto call : allowedCalls) {
        filter.push_back(jumpIfEqual(static_cast<std::uint32_t>(call), 0, 1));
        filter.push_back(allowed);
    }
    // New threads, but no new processes; the newer call hides what it asks for, and the C library knows both.
    constexpr std::uint32_t thread = 0x00010000; // CLONE_THREAD
    const auto threads = {jumpIfEqual(SYS_clone, 0, 4), load(argument(0)), jumpIfAnyBit(thread, 0, 1),
                          allowed, refuseWith(EPERM)};
    filter.insert(filter.end(), threads);
    // Memory for data, but for no more code.
    constexpr std::uint32_t executable = 4; // PROT_EXEC
    for (const auto call : {SYS_mmap, SYS_mprotect}) {
        const auto data = {jumpIfEqual(static_cast<std::uint32_t>(call), 0, 4), load(argument(2)),
                           jumpIfAnyBit(executable, 1, 0), allowed, refuseWith(EPERM)};
        filter.insert(filter.end(), data);
    }
    // Limits are read, not set, and only our own; the terminal is asked whether it is one.
    const auto limits = {jumpIfEqual(SYS_prlimit64, 0, 4), load(argument(2)), jumpIfEqual(0, 0, 1), allowed,
                         refuseWith(EPERM)};
    filter.insert(filter.end(), limits);
    constexpr std::uint32_t isTerminal = 0x5401; // TCGETS
    const auto terminal = {jumpIfEqual(SYS_ioctl, 0, 4), load(argument(1)), jumpIfEqual(isTerminal, 0, 1),
                           allowed, refuseWith(EPERM)};
    filter.insert(filter.end(), terminal);
    // Signals to ourselves, which is how a failed check ends the program.
    const auto self = static_cast<std::uint32_t>(::getpid());
    const auto signals = {jumpIfEqual(SYS_tgkill, 0, 4), load(argument(0)), jumpIfEqual(self, 0, 1), allowed,
                          refuseWith(EPERM)};
    filter.insert(filter.end(), signals);
    filter.push_back(refuseWith(ENOSYS));
    return filter;
}

bool confineCalls() {
    auto filter = callFilter();
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    // Without the last flag, older kernels would make all our memory slower to protect it from ourselves.
    constexpr unsigned flags = SECCOMP_FILTER_FLAG_TSYNC | SECCOMP_FILTER_FLAG_SPEC_ALLOW;
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, flags, &program) == 0;
}

void confine(const NeededFiles& files) {
    confineFiles(files);
    confineCalls();
}

} // namespace talvera::confinement
