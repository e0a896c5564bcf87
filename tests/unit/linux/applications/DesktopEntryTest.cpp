// SPDX-License-Identifier: MIT
#include "linux/applications/DesktopEntry.h"
#include "linux/applications/DesktopEntryIndex.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

#include <sys/stat.h>

using namespace talvera;

namespace {

std::optional<DesktopEntry> parse(const QByteArray& content, const QStringList& languages = {}) {
    return parseDesktopEntry("id", content, languages);
}

TEST(DesktopEntry, application_hasNameAndWindowClass) {
    EXPECT_EQ(parse("# comment\n[Desktop Entry]\n Name = Editor \nType=Application\r\nStartupWMClass=Edit\n"),
              (DesktopEntry{"id", "Editor", "Edit"}));
}

TEST(DesktopEntry, name_isTheFirstOfTheSessionsLanguages) {
    const QByteArray content =
        "[Desktop Entry]\nType=Application\nName=A\nName[de]=B\nName[de_AT]=C\nName[fr]=D\n";
    EXPECT_EQ(parse(content, {"de_AT", "de"})->name, "C");
    EXPECT_EQ(parse(content, {"de_CH", "de"})->name, "B");
    EXPECT_EQ(parse(content, {"ru"})->name, "A");
}

TEST(DesktopEntry, otherGroups_areNotRead) {
    EXPECT_EQ(parse("[Desktop Action New]\nName=Wrong\n[Desktop Entry]\nType=Application\nName=Right\n"
                    "[Desktop Action Other]\nName=Wrong\nHidden=true\n")
                  ->name,
              "Right");
}

TEST(DesktopEntry, linksAndRemovedEntries_areNoApplications) {
    EXPECT_EQ(parse("[Desktop Entry]\nType=Link\nName=X\n"), std::nullopt);
    EXPECT_EQ(parse("[Desktop Entry]\nType=Application\nHidden=true\nName=X\n"), std::nullopt);
    EXPECT_TRUE(parse("[Desktop Entry]\nType=Application\nNoDisplay=true\nName=X\n"));
}

TEST(DesktopEntry, hostileName_isMadePlain) {
    EXPECT_EQ(parse("[Desktop Entry]\nType=Application\nName=a\\nb\\\\c\x1b\xff\xE2\x80\xAE"
                    "d\\\n")
                  ->name,
              QString::fromUtf8("a b\\c \uFFFDd\\"));
}

TEST(DesktopEntry, noise_endsInNothingOrAnEntryButNeverBadly) {
    std::mt19937 random(1);
    const QByteArray alphabet("[]=\\\n\r #\0\xff"
                              "DesktopEntry Type=Application",
                              38);
    for (int round = 0; round < 2000; ++round) {
        QByteArray content = "[Desktop Entry]\n";
        for (unsigned i = random() % 200; i > 0; --i)
            content.append(alphabet[qsizetype(random() % std::size_t(alphabet.size()))]);
        if (const auto entry = parse(content, {"de"})) {
            EXPECT_LE(entry->name.size(), 100);
        }
    }
}

class DesktopEntryFiles : public testing::Test {
protected:
    QTemporaryDir first;
    QTemporaryDir second;

    static void write(const QTemporaryDir& directory, const QString& name, const QByteArray& keys) {
        const QFileInfo path(directory.filePath(name));
        QDir().mkpath(path.path());
        QFile file(path.filePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + keys);
    }

    QString found(const WindowIdentity& window) {
        const auto index = DesktopEntryIndex::read({first.path(), second.path()}, {});
        const auto* entry = index.find(window);
        return entry ? entry->id + ": " + entry->name : QString();
    }
};

TEST_F(DesktopEntryFiles, entry_isFoundByIdClassAndInstanceInAnyCase) {
    write(first, "org.example.Editor.desktop", "Name=Editor\nStartupWMClass=Edit Window\n");
    write(first, "viewer.desktop", "Name=Viewer\n");
    EXPECT_EQ(found({"org.example.Editor", "", ""}), "org.example.Editor: Editor");
    EXPECT_EQ(found({"", "EDIT WINDOW", ""}), "org.example.Editor: Editor");
    EXPECT_EQ(found({"", "Viewer", ""}), "viewer: Viewer");
    EXPECT_EQ(found({"", "", "viewer"}), "viewer: Viewer");
    EXPECT_EQ(found({"", "Other", "other"}), "");
    EXPECT_EQ(found({}), "");
}

TEST_F(DesktopEntryFiles, webApplication_goesByItsInstanceAndNotByTheBrowsersClass) {
    write(first, "browser.desktop", "Name=Browser\nStartupWMClass=browser\n");
    write(first, "browser-mail.desktop", "Name=Mail\nStartupWMClass=crx_mail\n");
    EXPECT_EQ(found({"", "Browser", "crx_mail"}), "browser-mail: Mail");
    EXPECT_EQ(found({"", "Browser", "browser"}), "browser: Browser");
}

TEST_F(DesktopEntryFiles, usersOwnEntry_hidesTheSystemsOne) {
    write(second, "editor.desktop", "Name=System\n");
    EXPECT_EQ(found({"editor", "", ""}), "editor: System");
    write(first, "editor.desktop", "Name=Mine\n");
    EXPECT_EQ(found({"editor", "", ""}), "editor: Mine");
    write(first, "editor.desktop", "Hidden=true\n");
    EXPECT_EQ(found({"editor", "", ""}), "");
}

TEST_F(DesktopEntryFiles, entryInAFolder_hasTheFolderInItsId) {
    write(first, "suite/writer.desktop", "Name=Writer\n");
    EXPECT_EQ(found({"suite-writer", "", ""}), "suite-writer: Writer");
}

TEST_F(DesktopEntryFiles, classWithABlank_isTheIdWithADash) {
    write(first, "my-editor.desktop", "Name=Mine\n");
    EXPECT_EQ(found({"", "My Editor", ""}), "my-editor: Mine");
}

TEST_F(DesktopEntryFiles, whatIsNoFile_isPassedOver) {
    ASSERT_EQ(::mkfifo(first.filePath("pipe.desktop").toUtf8().constData(), 0600), 0);
    QDir(first.path()).mkdir("folder.desktop");
    QFile::link("/nowhere", first.filePath("broken.desktop"));
    QFile::link(first.path(), first.filePath("loop"));
    write(first, "good.desktop", "Name=Good\n");
    EXPECT_EQ(found({"good", "", ""}), "good: Good");
    EXPECT_EQ(found({"pipe", "", ""}), "");
}

TEST_F(DesktopEntryFiles, megabytesOfNoise_areNoEntry) {
    QFile file(first.filePath("noise.desktop"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4'000'000, '['));
    file.close();
    EXPECT_EQ(found({"noise", "", ""}), "");
}

TEST_F(DesktopEntryFiles, missingDirectory_isAnEmptyOne) {
    EXPECT_EQ(DesktopEntryIndex::read({"/nowhere"}, {}).find({"x", "x", "x"}), nullptr);
}

} // namespace
