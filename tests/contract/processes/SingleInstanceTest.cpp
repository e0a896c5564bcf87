// SPDX-License-Identifier: MIT
#include "linux/posix/SingleInstance.h"

#include "ForkedProcess.h"
#include "PrintQt.h"
#include "platform/system/PlatformError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <vector>

using namespace talvera;
using test::ForkedProcess;

namespace {

constexpr char First = '1';
constexpr char Second = '2';

class SingleInstanceTest : public testing::Test {
protected:
    /// A process that says which start it was, and stays.
    ForkedProcess start() {
        return ForkedProcess([this](auto say) {
            const SingleInstance instance(directory.path());
            say(instance.isFirst() ? First : Second);
            ForkedProcess::stay();
        });
    }

    /// A second start that tells the first; it says whether it was heard.
    ForkedProcess startAndTell() {
        return ForkedProcess([this](auto say) {
            const SingleInstance instance(directory.path());
            say(!instance.isFirst() && instance.tellFirst() ? 'y' : 'n');
        });
    }

    int failure(const QString& inDirectory) {
        try {
            const SingleInstance instance(inDirectory);
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.domain(), "SingleInstance");
            return error.code();
        }
        return 0;
    }

    QString at(const char* name) const { return directory.path() + '/' + QString::fromUtf8(name); }

    QTemporaryDir directory;
};

TEST_F(SingleInstanceTest, secondStart_isNotTheFirst) {
    const SingleInstance first(directory.path());
    EXPECT_TRUE(first.isFirst());
    EXPECT_EQ(start().hear(), Second);
}

TEST_F(SingleInstanceTest, otherDirectory_isAnotherMatter) {
    const QTemporaryDir other;
    const SingleInstance here(directory.path());
    const SingleInstance there(other.path());
    EXPECT_TRUE(here.isFirst());
    EXPECT_TRUE(there.isFirst());
}

TEST_F(SingleInstanceTest, secondStart_isHeardByTheFirstFromItsEventLoop) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    QCoreApplication application(argc, argv);
    SingleInstance first(directory.path());
    int heard = 0;
    first.onSecondStart([&heard] { ++heard; });

    auto second = startAndTell();
    EXPECT_EQ(second.hear(), 'y');
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(heard, 0);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(heard, 1);
}

TEST_F(SingleInstanceTest, severalStarts_areHeardOneByOne) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    QCoreApplication application(argc, argv);
    SingleInstance first(directory.path());
    for (int start = 0; start < 3; ++start)
        EXPECT_EQ(startAndTell().hear(), 'y');

    int heard = 0;
    first.onSecondStart([&heard] { ++heard; }); // only now, and none of them is lost
    while (heard < 3)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, 3);
}

TEST_F(SingleInstanceTest, firstThatHangs_keepsNoSecondWaiting) {
    const SingleInstance first(directory.path()); // never listens
    std::string answers;
    for (int start = 0; start < 20; ++start)
        answers += startAndTell().hear();
    EXPECT_EQ(answers.front(), 'y');
    EXPECT_EQ(answers.back(), 'n') << "nobody takes so many";
}

TEST_F(SingleInstanceTest, killedFirst_letsTheNextOneStart) {
    auto killed = start();
    ASSERT_EQ(killed.hear(), First);
    killed.killAndWait();
    ASSERT_TRUE(QFileInfo::exists(at("agent.socket"))) << "it had no time to tidy up";

    const SingleInstance next(directory.path());
    EXPECT_TRUE(next.isFirst());
    EXPECT_EQ(startAndTell().hear(), 'y');
}

TEST_F(SingleInstanceTest, endedFirst_leavesNoSocketAndLetsTheNextOneStart) {
    std::optional<SingleInstance> first(std::in_place, directory.path());
    first.reset();
    EXPECT_FALSE(QFileInfo::exists(at("agent.socket")));
    EXPECT_TRUE(SingleInstance(directory.path()).isFirst());
}

TEST_F(SingleInstanceTest, endedSecond_leavesTheFirstItsSocket) {
    const SingleInstance first(directory.path());
    EXPECT_EQ(startAndTell().hear(), 'y');
    EXPECT_EQ(startAndTell().hear(), 'y');
}

TEST_F(SingleInstanceTest, manyAtOnce_haveOneFirst) {
    constexpr int count = 8;
    for (int round = 0; round < 10; ++round) {
        int gate[2];
        ASSERT_EQ(::pipe2(gate, O_CLOEXEC), 0);
        std::vector<ForkedProcess> starts;
        for (int start = 0; start < count; ++start) {
            starts.emplace_back([this, &gate](auto say) {
                ::close(gate[1]);
                char nothing;
                (void)!::read(gate[0], &nothing, 1); // until the gate opens
                const SingleInstance instance(directory.path());
                say(instance.isFirst() ? First : Second);
                ForkedProcess::stay();
            });
        }
        ::close(gate[0]);
        ::close(gate[1]);
        std::string answers;
        for (const auto& start : starts)
            answers += start.hear();
        EXPECT_EQ(std::count(answers.begin(), answers.end(), First), 1) << answers;
        EXPECT_EQ(std::count(answers.begin(), answers.end(), Second), count - 1) << answers;
    }
}

TEST_F(SingleInstanceTest, directoryThatIsMissing_isAnError) {
    EXPECT_EQ(failure(at("none")), ENOENT);
}

TEST_F(SingleInstanceTest, directoryTooDeepForASocket_isAnError) {
    const auto deep = at(std::string(100, 'd').c_str());
    ASSERT_TRUE(QDir().mkpath(deep));
    EXPECT_EQ(failure(deep), ENAMETOOLONG);
}

TEST_F(SingleInstanceTest, lockThatIsALink_isNotFollowed) {
    ASSERT_TRUE(QFile::link(at("elsewhere"), at("agent.lock")));
    EXPECT_EQ(failure(directory.path()), ELOOP);
    EXPECT_FALSE(QFileInfo::exists(at("elsewhere")));
}

TEST_F(SingleInstanceTest, files_areTheUsersOwn) {
    const SingleInstance first(directory.path());
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_EQ(QFile::permissions(at("agent.lock")) & others, QFile::Permissions{});
}

} // namespace
