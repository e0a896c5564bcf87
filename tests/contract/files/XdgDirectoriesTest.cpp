// SPDX-License-Identifier: MIT
#include "linux/xdg/XdgDirectories.h"
#include "platform/system/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace talvera;

namespace {

class XdgDirectoriesTest : public testing::Test {
protected:
    XdgDirectoriesTest() {
        environment.home = at("home");
        environment.runtime = at("run");
        environment.systemTemporary = at("tmp");
        environment.program = at("build/bin/talvera");
        makeDirectory("run", 0700);
        makeDirectory("tmp", 01777);
    }

    QString at(const char* name) const { return temporary.path() + '/' + QString::fromUtf8(name); }

    void makeDirectory(const char* name, mode_t mode) const {
        QDir().mkpath(at(name));
        setMode(at(name), mode);
    }

    static void setMode(const QString& path, mode_t mode) {
        ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    static void giveAway(const QString& path) {
        ASSERT_EQ(::lchown(QFile::encodeName(path).constData(), 12345, 12345), 0);
    }

    static void link(const QString& target, const QString& path) {
        ASSERT_EQ(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()), 0);
    }

    QString temporaryDirectory() const { return XdgDirectories::directories(environment).temporary; }

    QString stableName() const { return at("tmp") + QStringLiteral("/talvera-%1").arg(::geteuid()); }

    static void expectPrivate(const QString& path) {
        struct stat status {};
        ASSERT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
        EXPECT_TRUE(S_ISDIR(status.st_mode));
        EXPECT_EQ(status.st_uid, ::geteuid());
        EXPECT_EQ(status.st_mode & 07777, 0700U);
    }

    void expectFreshDirectory() const {
        const auto path = temporaryDirectory();
        EXPECT_TRUE(path.startsWith(stableName() + '-')) << path.toStdString();
        expectPrivate(path);
    }

    QTemporaryDir temporary;
    XdgDirectories::Environment environment;
};

TEST_F(XdgDirectoriesTest, userWithoutVariables_hasTheUsualPlaces) {
    const auto directories = XdgDirectories::directories(environment);
    EXPECT_EQ(directories.applicationSupport, at("home/.local/share"));
    EXPECT_EQ(directories.configuration, at("home/.config/Talvera"));
}

TEST_F(XdgDirectoriesTest, variables_decide) {
    environment.dataHome = "/data/";
    environment.configHome = "/config";
    const auto directories = XdgDirectories::directories(environment);
    EXPECT_EQ(directories.applicationSupport, "/data");
    EXPECT_EQ(directories.configuration, "/config/Talvera");
}

TEST_F(XdgDirectoriesTest, relativeVariables_areIgnored) {
    environment.dataHome = "data";
    environment.configHome = "./config";
    environment.runtime = "run";
    const auto directories = XdgDirectories::directories(environment);
    EXPECT_EQ(directories.applicationSupport, at("home/.local/share"));
    EXPECT_EQ(directories.configuration, at("home/.config/Talvera"));
    EXPECT_EQ(directories.temporary, stableName());
}

TEST_F(XdgDirectoriesTest, runtimeDirectory_holdsTheTemporaryOne) {
    const auto before = ::umask(0);
    EXPECT_EQ(temporaryDirectory(), at("run/talvera"));
    ::umask(before);
    expectPrivate(at("run/talvera"));
    EXPECT_EQ(temporaryDirectory(), at("run/talvera")); // and again
}

TEST_F(XdgDirectoriesTest, noRuntimeDirectory_givesOneUnderTheSystems) {
    environment.runtime.clear();
    EXPECT_EQ(temporaryDirectory(), stableName());
    expectPrivate(stableName());
    EXPECT_EQ(temporaryDirectory(), stableName());
    environment.runtime = at("none");
    EXPECT_EQ(temporaryDirectory(), stableName());
}

TEST_F(XdgDirectoriesTest, runtimeDirectoryOfSomebodyElse_isNotUsed) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may give files away";
    giveAway(at("run"));
    EXPECT_EQ(temporaryDirectory(), stableName());
    EXPECT_FALSE(QFileInfo::exists(at("run/talvera")));
}

TEST_F(XdgDirectoriesTest, runtimeDirectoryThatOthersMayWriteTo_isNotUsed) {
    setMode(at("run"), 0777);
    EXPECT_EQ(temporaryDirectory(), stableName());
}

TEST_F(XdgDirectoriesTest, directoryThatIsOpenToOthers_isNotUsed) {
    makeDirectory("run/talvera", 0755);
    EXPECT_EQ(temporaryDirectory(), stableName());
    setMode(stableName(), 0770);
    expectFreshDirectory();
}

TEST_F(XdgDirectoriesTest, linkInItsPlace_isNotFollowed) {
    makeDirectory("elsewhere", 0700);
    link(at("elsewhere"), at("run/talvera"));
    link(at("elsewhere"), stableName());
    expectFreshDirectory();
    EXPECT_TRUE(QDir(at("elsewhere")).isEmpty());
}

TEST_F(XdgDirectoriesTest, fileInItsPlace_isNotUsed) {
    environment.runtime.clear();
    QFile file(stableName());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    expectFreshDirectory();
}

TEST_F(XdgDirectoriesTest, directoryOfSomebodyElse_isNotUsed) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may give files away";
    environment.runtime.clear();
    QDir().mkpath(stableName());
    setMode(stableName(), 0700);
    giveAway(stableName());
    expectFreshDirectory();
}

TEST_F(XdgDirectoriesTest, nowhereToBePrivate_throws) {
    environment.runtime.clear();
    environment.systemTemporary = at("none");
    EXPECT_THROW(temporaryDirectory(), PlatformError);
}

TEST_F(XdgDirectoriesTest, resources_areBesideABuiltProgramAndInTheLibrariesOfAnInstalledOne) {
    EXPECT_EQ(XdgDirectories::directories(environment).resources, at("build/lib/talvera"));
    QDir().mkpath(at("build/bin/Resources"));
    EXPECT_EQ(XdgDirectories::directories(environment).resources, at("build/bin"));
    environment.program = "/usr/bin/talvera";
    EXPECT_EQ(XdgDirectories::directories(environment).resources, "/usr/lib/talvera");
}

TEST_F(XdgDirectoriesTest, environmentOfThisProcess_namesThisProgram) {
    EXPECT_TRUE(XdgDirectories::environment().program.endsWith("/contract_files"));
}

} // namespace
