// SPDX-License-Identifier: MIT
#include "linux/posix/PosixRelauncher.h"
#include "platform/system/PlatformError.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace talvera;
using namespace std::chrono_literals;

namespace {

class PosixRelauncherTest : public testing::Test {
protected:
    QString program() {
        const auto path = directory.filePath(QStringLiteral("the program"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\npwd > '" + QFile::encodeName(mark()) + ".new'\nmv '" +
                   QFile::encodeName(mark()) + ".new' '" + QFile::encodeName(mark()) + "'\n");
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return path;
    }
    QString mark() const { return directory.filePath(QStringLiteral("mark")); }
    bool appears(std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (!QFile::exists(mark()) && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(10ms);
        return QFile::exists(mark());
    }

    QTemporaryDir directory;
};

TEST_F(PosixRelauncherTest, program_startsOnceTheOldOneHasEnded) {
    QProcess old;
    old.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    ASSERT_TRUE(old.waitForStarted());
    PosixRelauncher(program(), directory.path(), static_cast<pid_t>(old.processId())).startAgainAfterOurEnd();
    EXPECT_FALSE(appears(1200ms)) << "beside the old one";
    old.kill();
    old.waitForFinished();
    ASSERT_TRUE(appears(10s));
    QFile file(mark());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(file.readAll()).trimmed(), directory.path());
}

TEST_F(PosixRelauncherTest, programThatIsGone_throws) {
    PosixRelauncher relauncher(QStringLiteral("/nowhere/talvera"), directory.path(), 1);
    EXPECT_THROW(relauncher.startAgainAfterOurEnd(), PlatformError);
}

} // namespace
