// SPDX-License-Identifier: MIT
#include "ObservedFakes.h"
#include "linux/xdg/XdgLoginItem.h"
#include "shell/settings/LaunchAtLogin.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

#include <pwd.h>
#include <unistd.h>

using namespace talvera;

namespace {

/// A home and a system of the test's own, with a program to start.
class Home {
public:
    Home() {
        addProgram(QStringLiteral("talvera"));
        QDir(m_directory.path()).mkpath(QStringLiteral("etc/xdg/autostart"));
    }

    QString at(const QString& path) const { return m_directory.filePath(path); }
    QString userEntry() const { return at(QStringLiteral("home/.config/autostart/talvera.desktop")); }
    QString systemEntry() const { return at(QStringLiteral("etc/xdg/autostart/talvera.desktop")); }

    QString addProgram(const QString& name) {
        write(at(QStringLiteral("bin/") + name), "#!/bin/sh\n");
        QFile::setPermissions(at(QStringLiteral("bin/") + name), QFile::ReadOwner | QFile::ExeOwner);
        return at(QStringLiteral("bin/") + name);
    }
    void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    XdgLoginItem::Session session(const QString& program = QStringLiteral("talvera")) const {
        return {at(QStringLiteral("bin/") + program),
                at(QStringLiteral("home/.config")),
                {at(QStringLiteral("etc/xdg"))},
                {QStringLiteral("ubuntu"), QStringLiteral("GNOME")},
                {at(QStringLiteral("bin"))}};
    }

private:
    QTemporaryDir m_directory;
};

struct Fake {
    test::FakeLoginItem item;
};
struct Xdg {
    Home home;
    XdgLoginItem item{home.session()};
};

template <typename Subject>
class LoginItemContract : public testing::Test {
protected:
    Subject subject;
    LoginItem& item() { return subject.item; }
};

using Subjects = testing::Types<Fake, Xdg>;
TYPED_TEST_SUITE(LoginItemContract, Subjects);

TYPED_TEST(LoginItemContract, program_isNotRegisteredAtFirst) {
    EXPECT_FALSE(this->item().isRegistered());
    this->item().unregisterProgram();
    EXPECT_FALSE(this->item().isRegistered());
}

TYPED_TEST(LoginItemContract, registering_canBeUndoneAndRepeated) {
    for (int i = 0; i < 2; ++i) {
        this->item().registerProgram();
        this->item().registerProgram();
        EXPECT_TRUE(this->item().isRegistered());
        this->item().unregisterProgram();
        EXPECT_FALSE(this->item().isRegistered());
    }
}

class XdgLoginItemTest : public testing::Test {
protected:
    bool startsWith(const QByteArray& lines) {
        const auto exec = "Exec=" + home.at(QStringLiteral("bin/talvera")).toUtf8() + "\n";
        home.write(home.userEntry(), "[Desktop Entry]\nType=Application\n" + exec + lines);
        return item.isRegistered();
    }

    Home home;
    XdgLoginItem item{home.session()};
};

TEST_F(XdgLoginItemTest, entry_namesOurProgramByItsPath) {
    item.registerProgram();
    const auto content = home.read(home.userEntry());
    EXPECT_TRUE(content.startsWith("[Desktop Entry]\nType=Application\nName=Talvera\n"));
    EXPECT_TRUE(content.contains("\nExec=\"" + home.at(QStringLiteral("bin/talvera")).toUtf8() + "\"\n"));
}

TEST_F(XdgLoginItemTest, entryOfAProgramThatIsRemoved_startsNothing) {
    item.registerProgram();
    const auto program = home.at(QStringLiteral("bin/talvera"));
    EXPECT_TRUE(home.read(home.userEntry()).contains("\nTryExec=" + program.toUtf8() + "\n"));
    EXPECT_TRUE(QFile::remove(program));
    EXPECT_FALSE(item.isRegistered());
}

TEST_F(XdgLoginItemTest, fileThatSomebodyElseRemoves_isTheTruth) {
    item.registerProgram();
    QFile::remove(home.userEntry());
    EXPECT_FALSE(item.isRegistered());
}

TEST_F(XdgLoginItemTest, entriesThatStartNothing_dontCount) {
    EXPECT_TRUE(startsWith(""));
    EXPECT_FALSE(startsWith("Hidden=true\n"));
    EXPECT_TRUE(startsWith("Hidden=false\n"));
    EXPECT_FALSE(startsWith("X-GNOME-Autostart-enabled=false\n"));
    EXPECT_FALSE(startsWith("X-MATE-Autostart-enabled=false\n"));
    EXPECT_TRUE(startsWith("X-GNOME-Autostart-enabled=true\n"));
    EXPECT_FALSE(startsWith("TryExec=talvera-that-is-nowhere\n"));
    EXPECT_TRUE(startsWith("TryExec=talvera\n"));
}

TEST_F(XdgLoginItemTest, otherDesktops_areNotOurs) {
    EXPECT_FALSE(startsWith("OnlyShowIn=KDE;XFCE;\n"));
    EXPECT_FALSE(startsWith("OnlyShowIn=\n"));
    EXPECT_TRUE(startsWith("OnlyShowIn=KDE;GNOME;\n"));
    EXPECT_FALSE(startsWith("NotShowIn=GNOME;\n"));
    EXPECT_TRUE(startsWith("NotShowIn=KDE;\n"));
}

TEST_F(XdgLoginItemTest, keysOfOtherGroups_dontCount) {
    EXPECT_TRUE(startsWith("[Desktop Action Quit]\nHidden=true\nExec=\n"));
    EXPECT_TRUE(startsWith("# Hidden=true\n"));
    EXPECT_FALSE(startsWith("Hidden = true\nHidden=false\n"));
}

TEST_F(XdgLoginItemTest, entryWithoutAProgramThatRuns_startsNothing) {
    const QByteArray head("[Desktop Entry]\nType=Application\n");
    for (const QByteArray tail :
         {"", "Exec=\n", "Exec=   \n", "Exec=/nowhere/talvera\n", "Exec=\"\"\n", "Exec=\\\n"}) {
        home.write(home.userEntry(), head + tail);
        EXPECT_FALSE(item.isRegistered()) << tail.toStdString();
    }
    home.write(home.userEntry(), head + "Exec=talvera --quietly %U\n");
    EXPECT_TRUE(item.isRegistered());
    home.write(home.userEntry(), "Exec=talvera\n");
    EXPECT_FALSE(item.isRegistered());
    home.write(home.userEntry(), "[Desktop Entry]\nType=Link\nExec=talvera\n");
    EXPECT_FALSE(item.isRegistered());
}

TEST_F(XdgLoginItemTest, noise_startsNothing) {
    for (int seed = 0; seed < 200; ++seed) {
        QByteArray noise("[Desktop Entry]\nType=Application\n");
        for (int i = 0; i < 300; ++i)
            noise += static_cast<char>((seed * 7919 + i * i * 31 + i * seed) & 0xFF);
        home.write(home.userEntry(), noise);
        EXPECT_FALSE(item.isRegistered());
    }
    home.write(home.userEntry(), QByteArray(2'000'000, '='));
    EXPECT_FALSE(item.isRegistered());
}

TEST_F(XdgLoginItemTest, strangePaths_comeBackAsTheyAre) {
    for (const auto* const name :
         {"with space", "per%cent", "quo\"te", "dollar$HOME", "back\\slash", "tick`", "äöü"}) {
        const auto program = QString::fromUtf8(name);
        home.addProgram(program);
        XdgLoginItem other(home.session(program));
        other.registerProgram();
        EXPECT_TRUE(other.isRegistered()) << name << home.read(home.userEntry()).toStdString();
    }
}

TEST_F(XdgLoginItemTest, systemsEntry_countsUntilTheUserSaysNo) {
    home.write(home.systemEntry(), "[Desktop Entry]\nType=Application\nExec=talvera\n");
    EXPECT_TRUE(item.isRegistered());
    item.unregisterProgram();
    EXPECT_FALSE(item.isRegistered());
    EXPECT_TRUE(home.read(home.userEntry()).contains("Hidden=true"));
    EXPECT_FALSE(home.read(home.systemEntry()).isEmpty());
    item.registerProgram();
    EXPECT_TRUE(item.isRegistered());
}

TEST_F(XdgLoginItemTest, placeThatCantBeWritten_throws) {
    home.write(home.at(QStringLiteral("home/.config")), "a file in the way");
    try {
        item.registerProgram();
        FAIL() << "did not throw";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.domain(), QStringLiteral("LoginItem"));
    }
    EXPECT_FALSE(item.isRegistered());
}

TEST_F(XdgLoginItemTest, programWithoutAPath_throws) {
    auto session = home.session();
    session.program.clear();
    EXPECT_THROW(XdgLoginItem(session).registerProgram(), PlatformError);
}

TEST_F(XdgLoginItemTest, switchOfTheSettings_setsWhatItShows) {
    setLaunchAtLogin(item, true);
    EXPECT_TRUE(item.isRegistered());
    home.write(home.userEntry(), "[Desktop Entry]\nType=Application\nExec=talvera\nHidden=true\n");
    setLaunchAtLogin(item, true);
    EXPECT_TRUE(item.isRegistered());
}

TEST(XdgLoginItemSession, withoutHomeOrXdgVariables_itIsTheUsersHomeThatCounts) {
    const auto home = qgetenv("HOME");
    const auto config = qgetenv("XDG_CONFIG_HOME");
    qunsetenv("HOME");
    qunsetenv("XDG_CONFIG_HOME");
    const auto session = XdgLoginItem::session();
    qputenv("HOME", home);
    if (!config.isNull())
        qputenv("XDG_CONFIG_HOME", config);
    const QString known = QFile::decodeName(::getpwuid(::geteuid())->pw_dir);
    EXPECT_EQ(session.configHome, known + "/.config");
}

} // namespace
