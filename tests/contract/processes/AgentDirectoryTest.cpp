// SPDX-License-Identifier: MIT
#include "linux/posix/AgentDirectory.h"

#include "ForkedProcess.h"
#include "platform/system/PlatformError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

using namespace talvera;
using test::ForkedProcess;

namespace {

class AgentDirectoryTest : public testing::Test {
protected:
    AgentDirectoryTest() { ::mkdir(QFile::encodeName(shared).constData(), 0700); }

    static void write(const QString& path) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        file.write("speech");
    }

    QStringList directories() const {
        return QDir(shared).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// A process with a directory and a recording in it, which ends as `work` does.
    template <typename Work>
    ForkedProcess agent(Work work) {
        return ForkedProcess([this, work](auto say) {
            static const AgentDirectory directory(shared);
            write(directory.path() + "/talvera-1.wav");
            say('.');
            work();
        });
    }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QTemporaryDir root;
    const QString shared = root.path() + "/talvera";
};

TEST_F(AgentDirectoryTest, directory_isPrivateAndInTheSharedOne) {
    const AgentDirectory directory(shared);
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(directory.path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    EXPECT_EQ(QFileInfo(directory.path()).path(), shared);
}

TEST_F(AgentDirectoryTest, twoAgents_keepTheirRecordings) {
    const AgentDirectory one(shared);
    write(one.path() + "/talvera-1.wav");
    const AgentDirectory other(shared);
    EXPECT_NE(one.path(), other.path());
    EXPECT_TRUE(QFile::exists(one.path() + "/talvera-1.wav"));
}

TEST_F(AgentDirectoryTest, end_takesRecordingsAlong) {
    auto directory = std::make_unique<AgentDirectory>(shared);
    write(directory->path() + "/talvera-1.wav");
    directory.reset();
    EXPECT_EQ(directories(), QStringList());
}

TEST_F(AgentDirectoryTest, exitInTheMiddle_takesRecordingsAlong) {
    auto agent = this->agent([] { std::exit(1); }); // as the toolkit does when the X server goes
    EXPECT_EQ(agent.hear(), '.');
    agent.wait();
    EXPECT_EQ(directories(), QStringList());
}

TEST_F(AgentDirectoryTest, whatAKilledAgentLeft_goesWithTheNextStart) {
    auto killed = agent([] { ForkedProcess::stay(); });
    ASSERT_EQ(killed.hear(), '.');
    const auto left = directories().value(0);
    killed.killAndWait();
    ASSERT_TRUE(QFile::exists(shared + '/' + left + "/talvera-1.wav"));
    write(shared + '/' + left + "/core");

    const AgentDirectory next(shared);
    EXPECT_EQ(directories(), QStringList(QFileInfo(next.path()).fileName()));
}

TEST_F(AgentDirectoryTest, whatALivingAgentHas_stays) {
    const auto living = agent([] { ForkedProcess::stay(); });
    ASSERT_EQ(living.hear(), '.');
    const auto its = directories().value(0);
    { const AgentDirectory next(shared); }
    EXPECT_EQ(directories(), QStringList(its));
    EXPECT_TRUE(QFile::exists(shared + '/' + its + "/talvera-1.wav"));
}

TEST_F(AgentDirectoryTest, linkWithSuchAName_isNotFollowed) {
    ASSERT_TRUE(QDir(root.path()).mkpath("elsewhere"));
    write(root.path() + "/elsewhere/kept");
    ASSERT_TRUE(QFile::link(root.path() + "/elsewhere", shared + "/agent-link"));
    const AgentDirectory directory(shared);
    EXPECT_TRUE(QFile::exists(root.path() + "/elsewhere/kept"));
}

TEST_F(AgentDirectoryTest, removedDirectory_isMadeAnewAsPrivateAsBefore) {
    const QCoreApplication application(argc, argv);
    AgentDirectory directory(shared);
    directory.keepInPlace();
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(QDir(directory.path()).removeRecursively());
        while (!QFileInfo::exists(directory.path()))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        EXPECT_EQ(QFile::permissions(directory.path()) &
                      (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther),
                  QFile::Permissions());
    }
    EXPECT_EQ(agent([] {}).hear(), '.');
    EXPECT_TRUE(QFileInfo::exists(directory.path())) << "the new one is locked, too";
}

TEST_F(AgentDirectoryTest, removedWithTheSharedOne_isMadeAnew) {
    const QCoreApplication application(argc, argv);
    AgentDirectory directory(shared);
    directory.keepInPlace();
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(QDir(shared).removeRecursively());
        while (!QFileInfo::exists(directory.path()))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_EQ(QFile::permissions(shared) & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther),
              QFile::Permissions());
}

TEST_F(AgentDirectoryTest, removedBeforeItIsKept_isMadeAnew) {
    const QCoreApplication application(argc, argv);
    AgentDirectory directory(shared);
    ASSERT_TRUE(QDir(directory.path()).removeRecursively());
    directory.keepInPlace();
    EXPECT_TRUE(QFileInfo::exists(directory.path()));
}

TEST_F(AgentDirectoryTest, placeTakenByAnotherMeanwhile_isNotOurs) {
    const QCoreApplication application(argc, argv);
    AgentDirectory directory(shared);
    ASSERT_TRUE(QDir(directory.path()).removeRecursively());
    write(directory.path());
    directory.keepInPlace();
    EXPECT_TRUE(QFileInfo(directory.path()).isFile());
}

TEST_F(AgentDirectoryTest, sharedDirectoryOpenToOthersMeanwhile_isNotUsedAgain) {
    const QCoreApplication application(argc, argv);
    AgentDirectory directory(shared);
    ASSERT_TRUE(QDir(directory.path()).removeRecursively());
    ASSERT_EQ(::chmod(QFile::encodeName(shared).constData(), 0777), 0);
    directory.keepInPlace();
    EXPECT_FALSE(QFileInfo::exists(directory.path()));
}

TEST_F(AgentDirectoryTest, sharedDirectoryThatIsMissing_isAnError) {
    try {
        const AgentDirectory directory(shared + "/none");
        FAIL() << "there is no place for it";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.domain().toStdString(), "AgentDirectory");
        EXPECT_TRUE(error.is(std::errc::no_such_file_or_directory));
    }
}

} // namespace
