// SPDX-License-Identifier: MIT
#include "linux/posix/leftRecordings.h"

#include "PrintQt.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

#include <sys/stat.h>

using namespace talvera;

namespace {

class LeftRecordingsTest : public testing::Test {
protected:
    void makeFile(const QString& name) {
        QFile file(at(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        file.write("speech");
    }

    std::vector<QString> left() const {
        const auto names =
            QDir(directory.path())
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        return {names.begin(), names.end()};
    }

    QString at(const QString& name) const { return directory.path() + '/' + name; }

    QTemporaryDir directory;
};

TEST_F(LeftRecordingsTest, recordingsChunksAndTranscripts_areDeleted) {
    const QString name = "talvera-F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6";
    for (const auto* ending : {".wav", ".wav.txt", "-chunk0.wav", "-chunk0.wav.txt"})
        makeFile(name + ending);
    makeFile("talvera-warmup-F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6.wav");
    removeLeftRecordings(directory.path());
    EXPECT_EQ(left(), std::vector<QString>{});
}

TEST_F(LeftRecordingsTest, filesThatCantBeReadOrAreNoFiles_areDeletedToo) {
    makeFile("talvera-a.wav");
    ASSERT_TRUE(QFile::setPermissions(at("talvera-a.wav"), {}));
    ASSERT_EQ(::mkfifo(QFile::encodeName(at("talvera-b.wav")).constData(), 0600), 0);
    removeLeftRecordings(directory.path());
    EXPECT_EQ(left(), std::vector<QString>{});
}

TEST_F(LeftRecordingsTest, coreFiles_areDeleted) {
    for (const auto* name : {"core", "core.1234", "core.talvera.1000"})
        makeFile(name);
    makeFile("corel");
    removeLeftRecordings(directory.path());
    EXPECT_EQ(left(), std::vector<QString>{"corel"});
}

TEST_F(LeftRecordingsTest, everythingElse_stays) {
    makeFile("agent.lock");
    makeFile("other-talvera-a.wav");
    ASSERT_TRUE(QDir().mkpath(at("talvera-folder")));
    removeLeftRecordings(directory.path());
    EXPECT_EQ(left(), (std::vector<QString>{"agent.lock", "other-talvera-a.wav", "talvera-folder"}));
}

TEST_F(LeftRecordingsTest, link_isDeletedAndNotWhatItNames) {
    makeFile("kept");
    ASSERT_TRUE(QFile::link(at("kept"), at("talvera-a.wav")));
    ASSERT_TRUE(QFile::link(at("nothing"), at("talvera-b.wav")));
    removeLeftRecordings(directory.path());
    EXPECT_EQ(left(), std::vector<QString>{"kept"});
}

TEST_F(LeftRecordingsTest, directoryThatIsMissing_isNoTrouble) {
    removeLeftRecordings(at("none"));
    EXPECT_EQ(left(), std::vector<QString>{});
}

} // namespace
