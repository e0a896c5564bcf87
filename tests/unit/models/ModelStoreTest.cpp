// SPDX-License-Identifier: MIT
#include "models/ModelStore.h"
#include "linux/posix/PosixFileSystem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace talvera;
using Items = ModelStore::Items;
using Readiness = ModelStore::Readiness;

namespace {

class ModelStoreTest : public testing::Test {
protected:
    QString support() const { return m_home.path() + QStringLiteral("/share"); }
    QString models() const { return support() + QStringLiteral("/Talvera/models"); }
    QString mainFile() const { return models() + QStringLiteral("/ggml-medium-q5_0.bin"); }
    QString encoder() const { return models() + QStringLiteral("/ggml-medium-encoder.mlmodelc"); }

    ModelStore store(Items items = Items::MainFileAndEncoder) {
        Directories directories;
        directories.applicationSupport = support();
        return {files, directories, items};
    }
    static void place(const QString& path) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    PosixFileSystem files;

private:
    QTemporaryDir m_home;
};

TEST_F(ModelStoreTest, paths_lieUnderTheApplicationSupportDirectory) {
    const auto store = this->store();
    EXPECT_EQ(store.applicationSupportDir, support() + QStringLiteral("/Talvera"));
    EXPECT_EQ(store.modelsDir, models());
    EXPECT_EQ(store.downloadsDir, support() + QStringLiteral("/Talvera/downloads"));
    EXPECT_EQ(store.modelMainURL, mainFile());
    EXPECT_EQ(store.modelEncoderURL, encoder());
}

TEST_F(ModelStoreTest, freshHome_getsTheDirectoriesAndIsMissingTheModel) {
    auto store = this->store();
    EXPECT_TRUE(QFileInfo(store.modelsDir).isDir());
    EXPECT_TRUE(QFileInfo(store.downloadsDir).isDir());
    EXPECT_EQ(store.readiness().get(), Readiness::Missing);
    EXPECT_FALSE(store.isReady());
}

TEST_F(ModelStoreTest, mainFileWithoutEncoder_isNotReady) {
    QDir().mkpath(models());
    place(mainFile());
    EXPECT_FALSE(store().isReady());
}

TEST_F(ModelStoreTest, encoderWithoutMainFile_isNotReady) {
    QDir().mkpath(encoder());
    EXPECT_FALSE(store().isReady());
}

TEST_F(ModelStoreTest, emptyMainFileAndEmptyEncoder_areReadySinceContentIsNotChecked) {
    QDir().mkpath(encoder());
    place(mainFile());
    auto store = this->store();
    EXPECT_TRUE(store.isReady());
    EXPECT_EQ(store.readiness().get(), Readiness::Ready);
}

TEST_F(ModelStoreTest, mainItemThatIsADirectory_isNotReady) {
    QDir().mkpath(encoder());
    QDir().mkpath(mainFile());
    EXPECT_FALSE(store().isReady());
}

TEST_F(ModelStoreTest, encoderThatIsAFile_isNotReady) {
    QDir().mkpath(models());
    place(mainFile());
    place(encoder());
    EXPECT_FALSE(store().isReady());
}

TEST_F(ModelStoreTest, mainFileDeletedMeanwhile_isNotReadyAtOnceWhileReadinessStays) {
    QDir().mkpath(encoder());
    place(mainFile());
    auto store = this->store();
    QFile::remove(mainFile());
    EXPECT_FALSE(store.isReady());
    EXPECT_EQ(store.readiness().get(), Readiness::Ready);
    store.recordReadiness();
    EXPECT_EQ(store.readiness().get(), Readiness::Missing);
}

TEST_F(ModelStoreTest, directoriesThatCannotBeCreated_areIgnored) {
    place(support());
    auto store = this->store();
    EXPECT_FALSE(store.isReady());
    EXPECT_EQ(store.readiness().get(), Readiness::Missing);
}

TEST_F(ModelStoreTest, noApplicationSupportDirectory_isFatal) {
    EXPECT_DEATH(ModelStore(files, Directories{}, Items::MainFileAlone), "no application support directory");
}

TEST_F(ModelStoreTest, modelWithoutEncoder_isReadyWithTheMainFileAlone) {
    EXPECT_FALSE(store(Items::MainFileAlone).isReady());
    place(mainFile());
    auto store = this->store(Items::MainFileAlone);
    EXPECT_TRUE(store.isReady());
    EXPECT_TRUE(store.hasEncoder());
    EXPECT_EQ(store.readiness().get(), Readiness::Ready);
}

TEST_F(ModelStoreTest, modelWithoutEncoder_isNotReadyWithoutMainFile) {
    QDir().mkpath(encoder());
    QDir().mkpath(mainFile());
    EXPECT_FALSE(store(Items::MainFileAlone).isReady());
}

TEST_F(ModelStoreTest, encoderWhoseUnpackingEnded_stays) {
    QDir().mkpath(encoder());
    place(mainFile());
    {
        auto store = this->store();
        store.beginUnpacking();
        store.endUnpacking();
    }
    EXPECT_TRUE(store().isReady());
}

TEST_F(ModelStoreTest, encoderWhoseUnpackingWasCutOff_isDiscardedAtTheNextStart) {
    QDir().mkpath(models());
    place(mainFile());
    store().beginUnpacking();
    QDir().mkpath(encoder() + QStringLiteral("/weights"));
    place(encoder() + QStringLiteral("/weights/weight.bin"));

    EXPECT_FALSE(store().isReady());
    EXPECT_FALSE(QFileInfo::exists(encoder()));
    QDir().mkpath(encoder()); // brought again
    EXPECT_TRUE(store().isReady());
}

} // namespace
