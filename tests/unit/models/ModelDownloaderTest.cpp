// SPDX-License-Identifier: MIT
#include "ModelDownloaderFixture.h"

#include <gmock/gmock.h>

using namespace talvera;
using namespace talvera::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(ModelDownloaderTest, newDownloader_isIdleAndAsksForNothing) {
    const auto& made = make();
    actor.settle();
    EXPECT_EQ(phase(), Phase::Idle);
    EXPECT_EQ(made.progress.get(), 0.0);
    EXPECT_EQ(made.bytesWritten.get(), 0);
    EXPECT_EQ(made.bytesTotal.get(), 0);
    EXPECT_FALSE(made.mainFileDone.get());
    EXPECT_FALSE(made.encoderDone.get());
    EXPECT_THAT(network.transfers, IsEmpty());
}

TEST_F(ModelDownloaderTest, start_fetchesBothFilesAtTheSameTime) {
    auto& made = start();
    EXPECT_EQ(phase(), Phase::Downloading);
    ASSERT_EQ(network.transfers.size(), 2U);
    EXPECT_TRUE(mainTransfer().isRunning());
    EXPECT_TRUE(encoderTransfer().isRunning());
    EXPECT_EQ(made.bytesTotal.get(), 853'785'267);
    EXPECT_EQ(made.bytesWritten.get(), 0);
}

TEST_F(ModelDownloaderTest, startWhileDownloading_makesNoSecondTask) {
    start().start();
    EXPECT_EQ(network.transfers.size(), 2U);
}

TEST_F(ModelDownloaderTest, startWhileVerifyingOrExtracting_makesNoSecondTask) {
    auto& made = start();
    observations.push_back(made.phase.observe([&made](const Phase& phase) {
        if (phase == Phase::Verifying || phase == Phase::Extracting)
            made.start();
    }));
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_THAT(phases,
                ElementsAre(Phase::Downloading, Phase::Verifying, Phase::Extracting, Phase::Downloading));
    EXPECT_EQ(network.transfers.size(), 2U);
}

TEST_F(ModelDownloaderTest, startWithBothItemsOnDisk_isDoneWithoutARequest) {
    placeMain();
    placeEncoder();
    auto& made = start();
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_EQ(made.progress.get(), 1.0);
    EXPECT_TRUE(made.mainFileDone.get());
    EXPECT_TRUE(made.encoderDone.get());
    EXPECT_THAT(network.transfers, IsEmpty());
}

TEST_F(ModelDownloaderTest, startWithTheMainFileOnDisk_fetchesTheEncoderAlone) {
    placeMain();
    auto& made = start();
    ASSERT_EQ(network.transfers.size(), 1U);
    EXPECT_TRUE(encoderTransfer().isRunning());
    EXPECT_EQ(made.bytesWritten.get(), mainSize);
    EXPECT_TRUE(made.mainFileDone.get());
}

TEST_F(ModelDownloaderTest, startWithTheEncoderOnDisk_fetchesTheMainFileAlone) {
    placeEncoder();
    auto& made = start();
    ASSERT_EQ(network.transfers.size(), 1U);
    EXPECT_EQ(made.bytesWritten.get(), encoderSize);
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::Done);
}

TEST_F(ModelDownloaderTest, progress_isThatOfBothFiles) {
    auto& made = start();
    mainTransfer().write(100'000'000);
    encoderTransfer().write(50'000'000);
    actor.settle();
    EXPECT_EQ(made.bytesWritten.get(), 150'000'000);
    EXPECT_EQ(made.bytesTotal.get(), 853'785'267);
    EXPECT_DOUBLE_EQ(made.progress.get(), 150'000'000 / 853'785'267.0);
}

TEST_F(ModelDownloaderTest, archiveBiggerThanExpected_keepsProgressWithinOne) {
    placeMain();
    auto& made = start();
    encoderTransfer().write(encoderSize + 1'000'000);
    actor.settle();
    EXPECT_EQ(made.bytesWritten.get(), 853'785'267);
    EXPECT_EQ(made.progress.get(), 1.0);
}

TEST_F(ModelDownloaderTest, archiveSmallerThanExpected_reachesOneOnlyAtTheEnd) {
    placeMain();
    auto& made = start();
    encoderTransfer().write(1'000'000);
    actor.settle();
    EXPECT_LT(made.progress.get(), 1.0);
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_EQ(made.progress.get(), 1.0);
}

TEST_F(ModelDownloaderTest, mainFileFirst_isInPlaceWhileTheOtherGoesOn) {
    auto& made = start();
    deliver(mainTransfer(), mainBytes);
    EXPECT_THAT(phases, ElementsAre(Phase::Downloading, Phase::Verifying, Phase::Downloading));
    EXPECT_TRUE(made.mainFileDone.get());
    EXPECT_FALSE(made.encoderDone.get());
    EXPECT_FALSE(store->isReady());
    EXPECT_EQ(files.read(mainPath), mainBytes);
    EXPECT_TRUE(encoderTransfer().isRunning());
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloaderTest, bothFiles_endInDoneAndAReadyModel) {
    auto& made = start();
    deliver(encoderTransfer(), archiveBytes);
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_EQ(made.progress.get(), 1.0);
    EXPECT_TRUE(store->isReady());
    EXPECT_EQ(store->readiness().get(), ModelStore::Readiness::Ready);
    EXPECT_THAT(downloads(), IsEmpty());
    EXPECT_FALSE(files.exists(store->modelsDir + "/encoder.unpacking"));
}

TEST_F(ModelDownloaderTest, bothDeliveredAtOnce_areInstalledOneAfterTheOther) {
    start();
    mainTransfer().finish(mainBytes);
    encoderTransfer().finish(archiveBytes);
    actor.settle();
    EXPECT_THAT(phases, ElementsAre(Phase::Downloading, Phase::Verifying, Phase::Downloading,
                                    Phase::Verifying, Phase::Extracting, Phase::Downloading, Phase::Done));
}

TEST_F(ModelDownloaderTest, unzip_isAskedToUnpackIntoTheModels) {
    start();
    deliver(encoderTransfer(), archiveBytes);
    ASSERT_EQ(unzip.requests.size(), 1U);
    const auto& request = unzip.requests.front();
    EXPECT_EQ(request.executable, "/usr/bin/unzip");
    EXPECT_EQ(request.arguments, QStringList({"-q", "-o", "/data/Talvera/downloads/encoder-NAME-1.tmp", "-d",
                                              "/data/Talvera/models"}));
    EXPECT_EQ(request.workingDirectory, directories.temporary);
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloaderTest, archiveWithTheWrongContent_endsInDoneAndAMissingModel) {
    placeMain();
    unzip.unpacked = "/something-else";
    start();
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_FALSE(store->isReady());
    EXPECT_EQ(store->readiness().get(), ModelStore::Readiness::Missing);
}

TEST_F(ModelDownloaderTest, directoryInTheMainFilesPlace_isReplaced) {
    files.createDirectories(mainPath);
    files.write(mainPath + "/thing", "x");
    placeEncoder();
    start();
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_EQ(files.read(mainPath), mainBytes);
}

TEST_F(ModelDownloaderTest, downloadsDirectoryThatVanished_isMadeAgain) {
    start();
    files.removeAll(store->downloadsDir);
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(files.read(mainPath), mainBytes);
}

TEST_F(ModelDownloaderTest, whatAKilledProgramLeft_isRemovedAtTheFirstStart) {
    files.write("/data/Talvera/downloads/main-OLD.tmp", "half");
    start();
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloaderTest, whatAKilledProgramLeft_isRemovedAlsoWhenTheModelIsThere) {
    files.write("/data/Talvera/downloads/main-OLD.tmp", "half");
    placeMain();
    placeEncoder();
    start();
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloaderTest, halfUnpackedEncoder_isFetchedAgain) {
    placeMain();
    files.write("/data/Talvera/models/encoder.unpacking", {});
    placeEncoder();
    auto& made = start();
    EXPECT_EQ(phase(), Phase::Downloading);
    EXPECT_FALSE(made.encoderDone.get());
    EXPECT_TRUE(encoderTransfer().isRunning());
}

TEST_F(ModelDownloaderTest, waitingForANetwork_isToldUntilAllGoOn) {
    auto& made = start();
    mainTransfer().wait(true);
    encoderTransfer().wait(true);
    actor.settle();
    EXPECT_TRUE(made.waitsForNetwork.get());
    EXPECT_EQ(phase(), Phase::Downloading);
    mainTransfer().wait(false);
    actor.settle();
    EXPECT_TRUE(made.waitsForNetwork.get());
    encoderTransfer().wait(false);
    actor.settle();
    EXPECT_FALSE(made.waitsForNetwork.get());
}

TEST_F(ModelDownloaderTest, itsEnd_endsTheTransfersToo) {
    start();
    mainTransfer().write(1000);
    downloader.reset();
    EXPECT_TRUE(mainTransfer().isCancelled());
    EXPECT_TRUE(encoderTransfer().isCancelled());
    actor.settle();
}

TEST_F(ModelDownloaderTest, itsEndDuringAnInstallation_isHarmless) {
    start();
    encoderTransfer().finish(archiveBytes);
    observations.push_back(downloader->phase.observe([this](const Phase& phase) {
        if (phase == Phase::Verifying)
            actor.post([this] { downloader.reset(); });
    }));
    actor.settle();
    EXPECT_EQ(downloader, nullptr);
}

TEST_F(MainFileDownloadTest, start_fetchesTheMainFileAlone) {
    auto& made = start();
    ASSERT_EQ(network.transfers.size(), 1U);
    EXPECT_TRUE(made.encoderDone.get());
    EXPECT_EQ(made.bytesTotal.get(), mainSize);
    mainTransfer().write(mainSize / 2);
    actor.settle();
    EXPECT_EQ(made.bytesWritten.get(), mainSize / 2);
    EXPECT_NEAR(made.progress.get(), 0.5, 1e-6);
}

TEST_F(MainFileDownloadTest, deliveredFile_isTheWholeModel) {
    auto& made = start();
    deliver(mainTransfer(), mainBytes);
    EXPECT_THAT(phases, ElementsAre(Phase::Downloading, Phase::Verifying, Phase::Downloading, Phase::Done));
    EXPECT_EQ(made.progress.get(), 1.0);
    EXPECT_TRUE(store->isReady());
    EXPECT_FALSE(files.exists(encoderPath));
    EXPECT_THAT(unzip.requests, IsEmpty());
}

TEST_F(MainFileDownloadTest, fileThatWasPutThereByHand_isEnough) {
    placeMain();
    start();
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_THAT(network.transfers, IsEmpty());
}

} // namespace
