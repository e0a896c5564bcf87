// SPDX-License-Identifier: MIT
#include "linux/clipboard/terminalProcess.h"
#include "ForkedProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include <sys/prctl.h>

using namespace talvera;
using talvera::test::ForkedProcess;

namespace {

/// For a helper's work: it ends with its program.
void endWithParent() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void openTerminal() {
    if (::posix_openpt(O_RDWR) < 0)
        ::_exit(1);
}

/// A program that has a helper do `work`. Says the helper's process when that is done.
template <typename Work>
ForkedProcess programWithHelper(Work work) {
    return ForkedProcess([work](auto say) {
        const ForkedProcess helper([work](auto tell) {
            endWithParent();
            work();
            tell('.');
            ForkedProcess::stay();
        });
        say(helper.hear());
        ForkedProcess::stay();
    });
}

} // namespace

TEST(TerminalProcess, programThatHoldsATerminal_showsOne) {
    const ForkedProcess emulator([](auto say) {
        openTerminal();
        say('.');
        ForkedProcess::stay();
    });
    ASSERT_EQ(emulator.hear(), '.');
    EXPECT_TRUE(mayShowTerminals(emulator.pid(), {}));
}

TEST(TerminalProcess, programWithAHelperThatHoldsATerminal_showsOne) {
    const auto editor = programWithHelper(openTerminal);
    ASSERT_EQ(editor.hear(), '.');
    EXPECT_TRUE(mayShowTerminals(editor.pid(), {editor.pid()}));
}

TEST(TerminalProcess, programWithoutTerminals_showsNone) {
    const auto editor = programWithHelper([] {});
    ASSERT_EQ(editor.hear(), '.');
    EXPECT_FALSE(mayShowTerminals(editor.pid(), {}));
}

TEST(TerminalProcess, emulatorThatAProgramHasStarted_isAProgramOfItsOwn) {
    const ForkedProcess fileManager([](auto say) {
        const ForkedProcess emulator([](auto tell) {
            endWithParent();
            openTerminal();
            tell('.');
            ForkedProcess::stay();
        });
        const bool ready = emulator.hear() == '.';
        const bool isTerminal = mayShowTerminals(::getpid(), {::getpid(), emulator.pid()});
        say(ready && !isTerminal ? '.' : '!');
    });
    EXPECT_EQ(fileManager.hear(), '.');
}

TEST(TerminalProcess, processThatCantBeLookedAt_countsAsOne) {
    EXPECT_TRUE(mayShowTerminals(0, {}));
}
