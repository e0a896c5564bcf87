// SPDX-License-Identifier: MIT
#include "ModelDownloaderFixture.h"

#include <gmock/gmock.h>

#include <cerrno>

using namespace talvera;
using namespace talvera::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using FailedDownloadTest = ModelDownloaderTest;
using Phase = ModelDownloader::Phase;

QByteArray flipped(QByteArray bytes) {
    bytes[bytes.size() / 2] = static_cast<char>(bytes.at(bytes.size() / 2) ^ 1);
    return bytes;
}

TEST_F(FailedDownloadTest, mainFileWithOneFlippedBit_failsOnceAndCancelsTheOther) {
    auto& made = start();
    deliver(mainTransfer(), flipped(mainBytes));
    EXPECT_EQ(phase(), Phase::failed("Main model checksum mismatch"));
    EXPECT_THAT(phases, ElementsAre(Phase::Downloading, Phase::Verifying, phase()));
    EXPECT_THAT(downloads(), IsEmpty());
    EXPECT_TRUE(encoderTransfer().isCancelled());
    EXPECT_FALSE(files.exists(mainPath));
    EXPECT_FALSE(made.mainFileDone.get());
}

TEST_F(FailedDownloadTest, archiveWithOneFlippedBit_failsAndIsNotUnpacked) {
    start();
    deliver(encoderTransfer(), flipped(archiveBytes));
    EXPECT_EQ(phase(), Phase::failed("Encoder checksum mismatch"));
    EXPECT_THAT(downloads(), IsEmpty());
    EXPECT_THAT(unzip.requests, IsEmpty());
    EXPECT_TRUE(mainTransfer().isCancelled());
}

TEST_F(FailedDownloadTest, emptyFile_isNotTheModel) {
    start();
    deliver(mainTransfer(), {});
    EXPECT_EQ(phase(), Phase::failed("Main model checksum mismatch"));
    EXPECT_FALSE(files.exists(mainPath));
}

TEST_F(FailedDownloadTest, failedTransfer_failsAndCancelsTheOther) {
    start();
    mainTransfer().fail(DownloadFailure::ConnectionLost);
    actor.settle();
    EXPECT_EQ(phase(), Phase::failed("The connection was cut off."));
    EXPECT_TRUE(encoderTransfer().isCancelled());
}

TEST_F(FailedDownloadTest, everyFailureOfTheNetwork_isASentence) {
    QStringList texts;
    for (int code = 1; code <= static_cast<int>(DownloadFailure::Other); ++code) {
        start();
        mainTransfer().fail(static_cast<DownloadFailure>(code));
        actor.settle();
        texts << phase().message();
        EXPECT_TRUE(phase().message().endsWith(u'.')) << code;
    }
    EXPECT_EQ(texts.removeDuplicates(), 0);
}

TEST_F(FailedDownloadTest, installedFile_staysWhenTheOtherFails) {
    auto& made = start();
    deliver(mainTransfer(), mainBytes);
    encoderTransfer().fail(DownloadFailure::ServerSilent);
    actor.settle();
    EXPECT_EQ(phase(), Phase::failed("The download server has stopped answering."));
    EXPECT_TRUE(made.mainFileDone.get());
    made.retry();
    EXPECT_EQ(made.bytesWritten.get(), mainSize);
    EXPECT_EQ(network.transfers.size(), 3U);
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::Done);
}

TEST_F(FailedDownloadTest, fileThatCannotBeSaved_isToldWithTheReason) {
    start();
    files.setCapacity(0);
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::failed("Could not save download: The file could not be written to the disk."));
    EXPECT_TRUE(encoderTransfer().isCancelled());
}

TEST_F(FailedDownloadTest, fileThatCannotBeRead_failsAndStays) {
    start();
    files.failReads("/data/Talvera/downloads/main-NAME-1.tmp", EIO);
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::failed("The disk reports an error."));
    EXPECT_EQ(downloads(), QStringList{"main-NAME-1.tmp"});
}

TEST_F(FailedDownloadTest, mainFileThatCannotBeMoved_failsAndStaysWhereItWas) {
    start();
    files.failMovesTo(mainPath, ENOSPC);
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::failed("The disk is full."));
    EXPECT_EQ(downloads(), QStringList{"main-NAME-1.tmp"});
    EXPECT_FALSE(downloader->mainFileDone.get());
}

TEST_F(FailedDownloadTest, unzipThatFails_isToldInItsWordsAndNoArchiveStays) {
    placeMain();
    unzip.status = 3;
    unzip.standardError = "a zipfile error";
    start();
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::failed("Extract failed: a zipfile error"));
    EXPECT_THAT(downloads(), IsEmpty());
    EXPECT_FALSE(downloader->encoderDone.get());
}

TEST_F(FailedDownloadTest, whatAFailedUnzipLeft_isNeverTakenForTheEncoder) {
    placeMain();
    unzip.status = 3;
    start();
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_TRUE(files.exists(encoderPath)); // it had begun
    unzip.status = 0;
    downloader->start();
    EXPECT_EQ(phase(), Phase::Downloading);
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::Done);
    EXPECT_EQ(unzip.requests.size(), 2U);
}

TEST_F(FailedDownloadTest, unzipThatWritesNoText_isToldInOurs) {
    unzip.status = 1;
    unzip.standardError = "\xFF\xFE";
    start();
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::failed("Extract failed: unzip failed"));
}

TEST_F(FailedDownloadTest, unzipThatCannotBeStarted_failsAndTheArchiveStays) {
    unzip.launchFailure = ENOENT;
    start();
    deliver(encoderTransfer(), archiveBytes);
    EXPECT_EQ(phase(), Phase::failed("The program unzip can't be started."));
    EXPECT_EQ(downloads(), QStringList{"encoder-NAME-1.tmp"});
}

TEST_F(FailedDownloadTest, deliveryBeforeTheFailure_isStillInstalledAndTheFailureStays) {
    auto& made = start();
    mainTransfer().finish(flipped(mainBytes));
    encoderTransfer().finish(archiveBytes);
    actor.settle();
    EXPECT_TRUE(made.encoderDone.get());
    EXPECT_EQ(phase(), Phase::failed("Main model checksum mismatch"));
}

TEST_F(FailedDownloadTest, startAfterAFailure_keepsWhatLiesThereAndFetchesAgain) {
    start();
    mainTransfer().fail(DownloadFailure::ConnectionLost);
    actor.settle();
    files.write("/data/Talvera/downloads/stray.tmp", "x");
    downloader->start();
    EXPECT_EQ(phase(), Phase::Downloading);
    EXPECT_EQ(downloads(), QStringList{"stray.tmp"});
    EXPECT_EQ(network.transfers.size(), 4U);
}

TEST_F(FailedDownloadTest, retryDuringATransfer_cancelsItSilentlyAndStartsFromNothing) {
    auto& made = start();
    files.write("/data/Talvera/downloads/stray.tmp", "x");
    mainTransfer().write(100'000'000);
    actor.settle();
    auto& old = mainTransfer();
    phases.clear();
    made.retry();
    EXPECT_TRUE(old.isCancelled());
    EXPECT_THAT(phases, ElementsAre(Phase::Idle, Phase::Downloading));
    EXPECT_THAT(downloads(), IsEmpty());
    EXPECT_TRUE(files.isDirectory(store->downloadsDir));
    EXPECT_EQ(made.bytesWritten.get(), 0);
    EXPECT_EQ(made.progress.get(), 0.0);
    EXPECT_EQ(network.transfers.size(), 4U);
    old.finish(mainBytes);
    actor.settle();
    EXPECT_EQ(phase(), Phase::Downloading);
}

TEST_F(FailedDownloadTest, retryDuringAnInstallation_waitsForItsEnd) {
    auto& made = start();
    observations.push_back(made.phase.observe([&, retried = false](const Phase& phase) mutable {
        if (phase == Phase::Verifying && !std::exchange(retried, true))
            made.retry();
    }));
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(files.read(mainPath), mainBytes);
    EXPECT_THAT(phases, ElementsAre(Phase::Downloading, Phase::Verifying, Phase::Downloading, Phase::Idle,
                                    Phase::Downloading));
    EXPECT_EQ(network.transfers.size(), 3U);
}

TEST_F(FailedDownloadTest, deliveryBehindARetry_isForgotten) {
    auto& made = start();
    auto& oldArchive = encoderTransfer();
    observations.push_back(made.phase.observe([&, once = false](const Phase& phase) mutable {
        if (phase != Phase::Verifying || std::exchange(once, true))
            return;
        made.retry();
        oldArchive.finish(archiveBytes);
    }));
    deliver(mainTransfer(), mainBytes);
    EXPECT_EQ(phase(), Phase::Downloading);
    EXPECT_TRUE(encoderTransfer().isRunning());
    EXPECT_THAT(unzip.requests, IsEmpty());
}

TEST_F(FailedDownloadTest, diskWithoutRoom_isToldBeforeAnythingIsFetched) {
    files.setCapacity(1'000'000'000);
    start();
    EXPECT_EQ(phase(),
              Phase::failed("There is not enough room on the disk: 1235 MB are needed, and 1000 MB are "
                            "free."));
    EXPECT_THAT(network.transfers, IsEmpty());
    files.setCapacity(2'000'000'000);
    downloader->retry();
    EXPECT_EQ(phase(), Phase::Downloading);
}

TEST_F(FailedDownloadTest, roomForWhatIsMissing_isEnough) {
    placeMain();
    placeEncoder();
    files.setCapacity(700'000'000);
    files.remove(mainPath);
    start();
    EXPECT_EQ(phase(), Phase::Downloading);
}

TEST_F(FailedDownloadTest, serverThatNeverEnds_isCutOff) {
    start();
    EXPECT_EQ(mainTransfer().request.sizeLimit, 2 * mainSize);
    mainTransfer().write(2 * mainSize + 1);
    actor.settle();
    EXPECT_EQ(phase(), Phase::failed("The download server sent far more than the speech model."));
}

TEST_F(FailedDownloadTest, failureWhileWaitingForANetwork_endsTheWait) {
    auto& made = start();
    mainTransfer().wait(true);
    actor.settle();
    mainTransfer().fail(DownloadFailure::NoNetwork);
    actor.settle();
    EXPECT_FALSE(made.waitsForNetwork.get());
    EXPECT_EQ(phase(), Phase::failed("There is no internet connection."));
}

} // namespace
