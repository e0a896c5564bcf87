// SPDX-License-Identifier: MIT
#include "linux/posix/TerminationSignals.h"

#include "ForkedProcess.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <string>

using namespace talvera;
using test::ForkedProcess;

namespace {

class TerminationSignalsTest : public testing::TestWithParam<int> {
protected:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
};

TEST_P(TerminationSignalsTest, signal_isHeardFromTheEventLoop) {
    int asked = 0;
    const TerminationSignals termination([&asked] { ++asked; });
    ::raise(GetParam());
    EXPECT_EQ(asked, 0);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(asked, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(asked, 1);
}

TEST_P(TerminationSignalsTest, sameSignalAgain_endsTheProcessThatHangs) {
    ForkedProcess hanging([](auto say) {
        const TerminationSignals termination([] {});
        ::raise(GetParam());
        say('1');
        ::raise(GetParam());
        say('2');
    });
    EXPECT_EQ(hanging.hear(), '1');
    EXPECT_EQ(hanging.hear(), '\0');
    const auto status = hanging.wait();
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
}

TEST_P(TerminationSignalsTest, signalAfterwards_isAsEver) {
    ForkedProcess process([](auto say) {
        {
            const TerminationSignals termination([] {});
        }
        ::raise(GetParam());
        say('?');
    });
    EXPECT_EQ(process.hear(), '\0');
    const auto status = process.wait();
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Asking, TerminationSignalsTest, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& chosen) { return std::string(::sigabbrev_np(chosen.param)); });

TEST_F(TerminationSignalsTest, twoKinds_areBothHeard) {
    int asked = 0;
    const TerminationSignals termination([&asked] { ++asked; });
    ::raise(SIGINT);
    ::raise(SIGTERM);
    while (asked < 2)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(asked, 2);
}

} // namespace
