// SPDX-License-Identifier: MIT
// What our build of the recogniser does with itself. Each case plays the recogniser in a process of its own,
// since what is given up is given up for good.
#include "Confinement.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace talvera::confinement;

namespace {

/// Runs it in a process of its own, and answers what it answers; -1 when a signal ended it.
int inAProcess(const std::function<int()>& play) {
    const auto process = ::fork();
    if (process == 0)
        ::_exit(play());
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int errorOf(long result) {
    return result < 0 ? errno : 0;
}

int errorOfOpening(const std::string& path, int flags) {
    return errorOf(::open(path.c_str(), flags | O_CLOEXEC, 0600));
}

constexpr int unavailable = 200;

class Confinement : public testing::Test {
protected:
    Confinement() {
        char name[] = "/tmp/confinement-XXXXXX";
        directory = ::mkdtemp(name);
        for (const auto* file : {"/model", "/sound.wav", "/other"})
            std::ofstream(directory + file) << "content";
        std::filesystem::create_directory(directory + "/results");
        std::ofstream(directory + "/results/old.txt") << "content";
    }
    ~Confinement() override { std::filesystem::remove_all(directory); }

    NeededFiles needed() const {
        return {{directory + "/model", directory + "/sound.wav"}, {directory + "/results/sound"}};
    }

    int withFilesConfined(const std::function<int()>& play) const {
        return inAProcess([&] { return confineFiles(needed()) ? play() : unavailable; });
    }

    std::string directory;
};

#define SKIP_WITHOUT_LANDLOCK(result)                                                                        \
    if ((result) == unavailable)                                                                             \
    GTEST_SKIP() << "this kernel has no Landlock, or not for us"

TEST_F(Confinement, neededFiles_canBeReadAndNothingElse) {
    const auto model = withFilesConfined([this] { return errorOfOpening(directory + "/model", O_RDONLY); });
    SKIP_WITHOUT_LANDLOCK(model);
    EXPECT_EQ(model, 0);
    EXPECT_EQ(withFilesConfined([this] { return errorOfOpening(directory + "/sound.wav", O_RDONLY); }), 0);
    EXPECT_EQ(withFilesConfined([this] { return errorOfOpening(directory + "/other", O_RDONLY); }), EACCES);
    EXPECT_EQ(withFilesConfined([this] { return errorOfOpening(directory, O_RDONLY | O_DIRECTORY); }),
              EACCES);
    EXPECT_EQ(withFilesConfined([] { return errorOfOpening("/etc/passwd", O_RDONLY); }), EACCES);
}

TEST_F(Confinement, results_canBeMadeAndReplacedAndNothingElse) {
    const auto made = withFilesConfined(
        [this] { return errorOfOpening(directory + "/results/sound.txt", O_WRONLY | O_CREAT); });
    SKIP_WITHOUT_LANDLOCK(made);
    EXPECT_EQ(made, 0);
    EXPECT_EQ(withFilesConfined(
                  [this] { return errorOfOpening(directory + "/results/old.txt", O_WRONLY | O_TRUNC); }),
              0);
    EXPECT_EQ(withFilesConfined([this] { return errorOfOpening(directory + "/results/old.txt", O_RDONLY); }),
              EACCES);
    EXPECT_EQ(withFilesConfined([this] { return errorOfOpening(directory + "/new", O_WRONLY | O_CREAT); }),
              EACCES);
    EXPECT_EQ(withFilesConfined([this] { return errorOfOpening(directory + "/sound.wav", O_WRONLY); }),
              EACCES);
    EXPECT_EQ(
        withFilesConfined([this] { return errorOf(::unlink((directory + "/results/old.txt").c_str())); }),
        EACCES);
    EXPECT_EQ(
        withFilesConfined([this] { return errorOf(::mkdir((directory + "/results/a").c_str(), 0700)); }),
        EACCES);
}

TEST_F(Confinement, filesThatAreMissing_areNoTrouble) {
    EXPECT_NE(inAProcess([] {
                  return confineFiles({{"/none", "-", ""}, {"/none/a", "a", ""}}) ? 0 : unavailable;
              }),
              -1);
}

TEST(ConfinementRules, eachVersionOfLandlock_takesAwayWhatItKnows) {
    EXPECT_EQ(fileRights(1), 0x1FFFU);
    EXPECT_EQ(fileRights(2), 0x3FFFU);
    EXPECT_EQ(fileRights(3), 0x7FFFU);
    EXPECT_EQ(fileRights(4), 0x7FFFU);
    EXPECT_EQ(fileRights(5), 0xFFFFU);
    EXPECT_EQ(fileRights(99), 0xFFFFU);
}

int withCallsConfined(const std::function<int()>& play) {
    return inAProcess([&] { return confineCalls() ? play() : unavailable; });
}

TEST(ConfinementOfCalls, network_isGone) {
    const auto internet = withCallsConfined([] { return errorOf(::socket(AF_INET, SOCK_STREAM, 0)); });
    if (internet == unavailable)
        GTEST_SKIP() << "this kernel has no seccomp, or not for us";
    EXPECT_EQ(internet, ENOSYS);
    EXPECT_EQ(withCallsConfined([] { return errorOf(::socket(AF_UNIX, SOCK_STREAM, 0)); }), ENOSYS);
    int pair[2];
    EXPECT_EQ(withCallsConfined([&] { return errorOf(::socketpair(AF_UNIX, SOCK_STREAM, 0, pair)); }),
              ENOSYS);
    EXPECT_EQ(withCallsConfined([] { return errorOf(::syscall(SYS_io_uring_setup, 1, nullptr)); }), ENOSYS);
}

TEST(ConfinementOfCalls, otherProgramsAndProcesses_areGone) {
    const auto execution = withCallsConfined([] { return errorOf(::execl("/bin/true", "true", nullptr)); });
    if (execution == unavailable)
        GTEST_SKIP() << "this kernel has no seccomp, or not for us";
    EXPECT_EQ(execution, ENOSYS);
    EXPECT_EQ(withCallsConfined([] { return errorOf(::syscall(SYS_fork)); }), ENOSYS);
    EXPECT_EQ(withCallsConfined([] { return errorOf(::fork()); }), EPERM);
    EXPECT_EQ(withCallsConfined([] { return errorOf(::kill(::getppid(), 0)); }), ENOSYS);
    EXPECT_EQ(
        withCallsConfined([] { return errorOf(::ptrace(PTRACE_ATTACH, ::getppid(), nullptr, nullptr)); }),
        ENOSYS);
    EXPECT_EQ(withCallsConfined([] { return errorOf(::syscall(SYS_tgkill, ::getppid(), ::getppid(), 0)); }),
              EPERM);
}

TEST(ConfinementOfCalls, memory_canHoldNoMoreCode) {
    const auto map = [](int protection) {
        return withCallsConfined([protection] {
            auto* const memory = ::mmap(nullptr, 4096, protection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            return memory == MAP_FAILED ? errno : 0;
        });
    };
    if (map(PROT_READ) == unavailable)
        GTEST_SKIP() << "this kernel has no seccomp, or not for us";
    EXPECT_EQ(map(PROT_READ | PROT_WRITE), 0);
    EXPECT_EQ(map(PROT_READ | PROT_EXEC), EPERM);
}

TEST(ConfinementOfCalls, threadsFilesAndTheEnd_stay) {
    const auto works = [] {
        int done = 0;
        pthread_t thread{}; // not std::thread, whose checks by sanitizers take calls that are gone
        const auto run = [](void* result) -> void* {
            *static_cast<int*>(result) = 1;
            return nullptr;
        };
        if (::pthread_create(&thread, nullptr, run, &done) != 0 || ::pthread_join(thread, nullptr) != 0)
            return 1;
        const int file = ::open("/dev/null", O_RDONLY);
        return done == 1 && file >= 0 ? 7 : 1;
    };
    const auto result = withCallsConfined(works);
    if (result == unavailable)
        GTEST_SKIP() << "this kernel has no seccomp, or not for us";
    EXPECT_EQ(result, 7);
    EXPECT_EQ(withCallsConfined([]() -> int { std::abort(); }), -1);
}

TEST(ConfinementOfMemory, noCoreFileAndNobodyWhoLooksIn) {
    EXPECT_EQ(inAProcess([] {
                  keepMemoryPrivate();
                  rlimit limit{};
                  ::getrlimit(RLIMIT_CORE, &limit);
                  return limit.rlim_max == 0 && ::prctl(PR_GET_DUMPABLE) == 0 ? 7 : 1;
              }),
              7);
}

TEST(ConfinementPrompt, path_standsForWhatTheDescriptorHolds) {
    const int file = ::memfd_create("test", MFD_CLOEXEC);
    const std::string said(10'000, 's');
    ASSERT_EQ(::pwrite(file, said.data(), said.size(), 0), static_cast<ssize_t>(said.size()));
    EXPECT_EQ(promptOf("/dev/fd/" + std::to_string(file)), said);
    EXPECT_EQ(::fcntl(file, F_GETFD), -1) << "it is closed";
}

TEST(ConfinementPrompt, everythingElse_standsForItself) {
    for (const auto* prompt : {"", "Hello", "dev/fd/3", "/dev/fd", "see /dev/fd/3"})
        EXPECT_EQ(promptOf(prompt), prompt);
}

TEST(ConfinementPrompt, pathOfNoDescriptor_isAnError) {
    for (const auto* prompt : {"/dev/fd/", "/dev/fd/x", "/dev/fd/3x", "/dev/fd/-1", "/dev/fd/987654",
                               "/dev/fd/99999999999999999999"})
        EXPECT_EQ(promptOf(prompt), std::nullopt) << prompt;
}

} // namespace
