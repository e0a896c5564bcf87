// SPDX-License-Identifier: MIT
#include "linux/support/childConfinement.h"

#include "linux/support/landlock.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>

namespace talvera {

namespace {

constexpr sock_filter statement(unsigned code, std::uint32_t value) {
    return {static_cast<std::uint16_t>(code), 0, 0, value};
}

constexpr sock_filter jump(unsigned how, std::uint32_t value, unsigned ifSo, unsigned ifNot) {
    return {static_cast<std::uint16_t>(BPF_JMP | how | BPF_K), static_cast<std::uint8_t>(ifSo),
            static_cast<std::uint8_t>(ifNot), value};
}

constexpr sock_filter load(std::size_t offset) {
    return statement(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
}

constexpr sock_filter refuseWith(int error) {
    return statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error));
}

constexpr sock_filter allowed = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);

#ifdef __x86_64__
constexpr std::uint32_t thisMachine = AUDIT_ARCH_X86_64;
#else
constexpr std::uint32_t thisMachine = AUDIT_ARCH_AARCH64;
#endif

// Ways to other processes and other users' data. The last one could do the work of nearly all the others.
constexpr std::array refusedCalls = {
    SYS_connect,     SYS_ptrace,      SYS_process_vm_readv, SYS_process_vm_writev,
    SYS_pidfd_getfd, SYS_kill,        SYS_add_key,          SYS_request_key,
    SYS_keyctl,      SYS_bpf,         SYS_unshare,          SYS_setns,
    SYS_mount,       SYS_userfaultfd, SYS_io_uring_setup,
#ifdef __x86_64__
    SYS_fork,        SYS_vfork,
#endif
};

constexpr std::size_t otherSteps = 6 + 2 + 5 + 8 + 1; ///< of the filter, beside those for the refused calls

/// What the kernel runs on each system call.
constexpr auto makeCallFilter() {
    std::array<sock_filter, 2 * refusedCalls.size() + otherSteps> filter{};
    std::size_t next = 0;
    const auto add = [&](std::initializer_list<sock_filter> steps) {
        for (const auto& step : steps)
            filter[next++] = step;
    };
    const auto number = load(offsetof(seccomp_data, nr));
    const auto firstArgument = load(offsetof(seccomp_data, args));
    const auto secondArgument = load(offsetof(seccomp_data, args) + sizeof(std::uint64_t));
    constexpr std::uint32_t foreignNumbers = 0x40000000; // of the calls for 32-bit pointers
    constexpr std::uint32_t thread = 0x00010000;         // CLONE_THREAD
    constexpr std::uint32_t kindOfSocket = 0xF;          // without flags such as SOCK_CLOEXEC

    // A call of another machine is none that a program of this kind can make.
    add({load(offsetof(seccomp_data, arch)), jump(BPF_JEQ, thisMachine, 1, 0),
         statement(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS)});
    add({number, jump(BPF_JGE, foreignNumbers, 0, 1), refuseWith(ENOSYS)});
    for (const auto call : refusedCalls)
        add({jump(BPF_JEQ, static_cast<std::uint32_t>(call), 0, 1), refuseWith(EPERM)});
    // Threads, but no processes; the newer call hides what it asks for, and the C library knows both.
    add({jump(BPF_JEQ, SYS_clone3, 0, 1), refuseWith(ENOSYS)});
    add({jump(BPF_JEQ, SYS_clone, 0, 4), firstArgument, jump(BPF_JSET, thread, 0, 1), allowed,
         refuseWith(EPERM)});
    // Others would reach their listener without a connection.
    add({jump(BPF_JEQ, SYS_socket, 0, 7), firstArgument, jump(BPF_JEQ, AF_UNIX, 0, 4), secondArgument,
         statement(BPF_ALU | BPF_AND | BPF_K, kindOfSocket), jump(BPF_JEQ, SOCK_STREAM, 0, 1), allowed,
         refuseWith(EAFNOSUPPORT)});
    add({allowed});
    return filter;
}

constexpr auto callFilter = makeCallFilter();

void confineFiles() {
    using namespace landlock;
    const auto version = static_cast<int>(::syscall(createRuleset, nullptr, 0, askForVersion));
    if (version < 1)
        return;
    auto files = writeFile | removeAndMake;
    if (version >= 2)
        files |= referToOther;
    if (version >= 3)
        files |= truncateFile;
    const Ruleset ruleset{files, bindAndConnect, 0};
    const auto descriptor = static_cast<int>(::syscall(createRuleset, &ruleset, rulesetSize(version), 0));
    if (descriptor < 0)
        return;
    if (const int here = ::open(".", O_PATH | O_CLOEXEC | O_DIRECTORY); here >= 0) {
        const PathRule rule{files & ~referToOther, here};
        ::syscall(addRule, descriptor, ruleBeneathPath, &rule, 0);
        ::close(here);
    }
    ::syscall(restrictSelf, descriptor, 0);
    ::close(descriptor);
}

void confineCalls() {
    const sock_fprog program{static_cast<unsigned short>(callFilter.size()),
                             const_cast<sock_filter*>(callFilter.data())};
    // Without the flag, older kernels would make all its memory slower to protect it from itself.
    ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_SPEC_ALLOW, &program);
}

} // namespace

void confineToOwnSocket() {
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return;
    confineFiles();
    confineCalls();
}

} // namespace talvera
