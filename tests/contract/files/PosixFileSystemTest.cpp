// SPDX-License-Identifier: MIT
#include "linux/posix/PosixFileSystem.h"
#include "TinyDisk.h"
#include "platform/system/PlatformError.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class PosixFileSystemTest : public testing::Test {
protected:
    QString at(const char* name) { return temporary.path() + '/' + QString::fromUtf8(name); }

    static mode_t modeOf(const QString& path) {
        struct stat status {};
        EXPECT_EQ(::lstat(path.toLocal8Bit().constData(), &status), 0);
        return status.st_mode & 07777;
    }

    template <typename Access>
    static int failure(Access access) {
        try {
            access();
        } catch (const PlatformError& error) {
            return error.code();
        }
        return 0;
    }

    QTemporaryDir temporary;
    PosixFileSystem files;
};

TEST_F(PosixFileSystemTest, whatItMakes_isPrivateWhateverTheMask) {
    const auto before = ::umask(0);
    files.createDirectories(at("d/e"));
    files.write(at("d/e/a"), "x");
    ::umask(before);
    EXPECT_EQ(modeOf(at("d")), 0700U);
    EXPECT_EQ(modeOf(at("d/e")), 0700U);
    EXPECT_EQ(modeOf(at("d/e/a")), 0600U);
}

TEST_F(PosixFileSystemTest, fileThatWasOpenToOthers_becomesPrivate) {
    files.write(at("a"), "x");
    ::chmod(at("a").toLocal8Bit().constData(), 0666);
    files.write(at("a"), "y");
    EXPECT_EQ(modeOf(at("a")), 0600U);
}

TEST_F(PosixFileSystemTest, fullDisk_throwsAndLeavesNoFile) {
    const TinyDisk disk(at("disk"), 64 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    const auto path = at("disk/a.wav");
    EXPECT_EQ(failure([&] { files.write(path, QByteArray(1 << 20, 'x')); }), ENOSPC);
    EXPECT_FALSE(files.exists(path));
    files.write(path, "small"); // the room is free again
    EXPECT_EQ(failure([&] { files.write(path, QByteArray(1 << 20, 'x')); }), ENOSPC);
    EXPECT_FALSE(files.exists(path)); // neither the new nor half of the old
}

TEST_F(PosixFileSystemTest, pipesAndDevices_areErrorsAndNeverAWait) {
    ASSERT_EQ(::mkfifo(at("pipe").toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(failure([&] { files.read(at("pipe")); }), EINVAL);
    EXPECT_NE(failure([&] { files.write(at("pipe"), "x"); }), 0);
    EXPECT_EQ(failure([&] { files.read("/dev/zero"); }), EINVAL);
    EXPECT_EQ(failure([&] { files.write("/dev/full", "x"); }), EINVAL);
    EXPECT_TRUE(files.exists("/dev/full"));
    EXPECT_TRUE(files.exists(at("pipe")));
}

TEST_F(PosixFileSystemTest, pathWithANul_namesNothing) {
    files.write(at("a"), "x");
    const QString path = at("a") + QChar(u'\0') + "b";
    EXPECT_EQ(failure([&] { files.read(path); }), EINVAL);
    EXPECT_EQ(failure([&] { files.write(path, "y"); }), EINVAL);
    EXPECT_EQ(failure([&] { files.remove(path); }), EINVAL);
    EXPECT_FALSE(files.exists(path));
    EXPECT_EQ(files.read(at("a")), "x");
}

TEST_F(PosixFileSystemTest, roomOnADisk_isWhatCanBeWritten) {
    const TinyDisk disk(at("disk"), 1 << 20);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    const auto before = files.availableBytes(at("disk"));
    ASSERT_TRUE(before);
    EXPECT_LE(*before, 1 << 20);
    files.write(at("disk/a"), QByteArray(1 << 19, 'x'));
    EXPECT_EQ(files.availableBytes(at("disk")), *before - (1 << 19));
}

TEST_F(PosixFileSystemTest, removalOfAll_doesNotFollowLinks) {
    files.createDirectories(at("d"));
    files.createDirectories(at("elsewhere"));
    files.write(at("elsewhere/a"), "x");
    ASSERT_EQ(::symlink("../elsewhere", at("d/link").toLocal8Bit().constData()), 0);
    files.removeAll(at("d"));
    EXPECT_FALSE(files.exists(at("d")));
    EXPECT_EQ(files.read(at("elsewhere/a")), "x");
}

TEST_F(PosixFileSystemTest, linkToNothing_doesNotExist) {
    ASSERT_EQ(::symlink("nowhere", at("link").toLocal8Bit().constData()), 0);
    EXPECT_FALSE(files.exists(at("link")));
    files.remove(at("link"));
}

TEST_F(PosixFileSystemTest, readOnlyFile_isNoTool) {
    files.write(at("tool"), "#!/bin/sh\n");
    EXPECT_FALSE(files.isExecutableFile(at("tool")));
    ::chmod(at("tool").toLocal8Bit().constData(), 0500);
    EXPECT_TRUE(files.isExecutableFile(at("tool")));
}

} // namespace
