// SPDX-License-Identifier: MIT
#include "linux/network/UnnamedFile.h"
#include "ForkedProcess.h"
#include "platform/network/FileDownloads.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace talvera;
using namespace talvera::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UnnamedFileTest : public testing::Test {
protected:
    QStringList entries() const {
        return QDir(m_directory.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QString at(const char* name) const { return m_directory.path() + '/' + name; }
    QString directory() const { return m_directory.path(); }
    QByteArray contents(const char* name) const {
        QFile file(at(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    QTemporaryDir m_directory;
};

TEST_F(UnnamedFileTest, whatIsAppended_showsOnceItHasAName) {
    UnnamedFile file(directory());
    file.append("one");
    file.append({});
    file.append("two");
    EXPECT_THAT(entries(), IsEmpty());
    file.moveTo(at("a"));
    EXPECT_THAT(entries(), ElementsAre("a"));
    EXPECT_EQ(contents("a"), "onetwo");
}

TEST_F(UnnamedFileTest, missingDirectory_isMadeAndPrivate) {
    UnnamedFile(at("d/e")).moveTo(at("d/e/a"));
    EXPECT_EQ(QFile::permissions(at("d/e")) & (QFile::ReadGroup | QFile::ReadOther), 0);
}

TEST_F(UnnamedFileTest, nameThatIsTaken_isNotOverwritten) {
    UnnamedFile first(directory());
    first.append("first");
    first.moveTo(at("a"));
    UnnamedFile second(directory());
    EXPECT_THROW(second.moveTo(at("a")), PlatformError);
    EXPECT_EQ(contents("a"), "first");
}

TEST_F(UnnamedFileTest, killedProcess_leavesNothingOfAFileWithoutName) {
    ForkedProcess process([this](const auto& say) {
        UnnamedFile file(directory());
        file.append("half a model");
        say('w');
        ForkedProcess::stay();
    });
    ASSERT_EQ(process.hear(), 'w');
    process.killAndWait();
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(UnnamedFileTest, fileOfALivingProcess_isNotRemovedByAnother) {
    ForkedProcess process([this](const auto& say) {
        UnnamedFile file(directory());
        file.append("a model");
        file.moveTo(at("a"));
        say('m');
        ForkedProcess::stay();
    });
    ASSERT_EQ(process.hear(), 'm');
    UnnamedFile::removeUnlocked(directory());
    EXPECT_THAT(entries(), ElementsAre("a"));
    process.killAndWait();
    UnnamedFile::removeUnlocked(directory());
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(UnnamedFileTest, removal_takesNoLinksAndWaitsForNoPipe) {
    QFile elsewhere(at("elsewhere"));
    ASSERT_TRUE(QDir().mkpath(at("d")));
    ASSERT_TRUE(elsewhere.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(at("elsewhere"), at("d/link")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(at("d/pipe")).constData(), 0600), 0);
    UnnamedFile::removeUnlocked(at("d"));
    EXPECT_TRUE(QFile::exists(at("elsewhere")));
}

} // namespace
