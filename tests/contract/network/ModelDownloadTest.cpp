// SPDX-License-Identifier: MIT
// The model's way from a server to its place, with everything that can go wrong on it.
#include "FileServer.h"
#include "ModelHome.h"
#include "TinyDisk.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

using Phase = ModelDownloader::Phase;

constexpr qint64 modelSize = 3'000'000;

QString sha(const QByteArray& bytes) {
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class ModelDownloadTest : public testing::Test {
protected:
    ModelDownloadTest() {
        const auto script =
            QStringLiteral("import sys, zipfile\n"
                           "with zipfile.ZipFile(sys.argv[1], 'w') as archive:\n"
                           "    archive.writestr('ggml-medium-encoder.mlmodelc/weights/w.bin', b'w')\n");
        QProcess::execute("python3", {"-c", script, archive});
    }

    ModelItem item(const QString& path, const QString& port = "https") const {
        return {server.url(path, port), sha(model), modelSize};
    }
    ModelItem encoder(const QString& path = "encoder.zip") const {
        return {server.url(path), sha(contents(archive)), 1000};
    }
    ModelHome& home(ModelSource source) {
        m_home.reset();
        m_home = std::make_unique<ModelHome>(data, std::move(source),
                                             QtFileDownloads::Options{limits, server.authority()});
        return *m_home;
    }
    /// Runs until nothing is on its way any more; answers the phase.
    static Phase atRest(ModelHome& home) {
        while (home.downloader.phase.get().isBusy())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return home.downloader.phase.get();
    }
    /// What the download of this item ends in.
    Phase fetch(const ModelItem& main) {
        auto& made = home({main, {}});
        made.downloader.start();
        return atRest(made);
    }

    QString mainFile() const { return data + "/Talvera/models/ggml-medium-q5_0.bin"; }
    QStringList downloads() const { return entries("/Talvera/downloads"); }
    QStringList models() const { return entries("/Talvera/models"); }
    void expectNoTrace() const {
        EXPECT_THAT(downloads(), IsEmpty());
        EXPECT_THAT(models(), IsEmpty());
    }

    QTemporaryDir temporary;
    QString data = temporary.path() + "/data";
    const QString archive = temporary.path() + "/encoder.zip";
    const QByteArray model = FileServer::pattern(modelSize);
    FileServer server{{{"encoder.zip", archive}}};
    DownloadLimits limits;

private:
    QStringList entries(const QString& path) const {
        return QDir(data + path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<ModelHome> m_home;
};

TEST_F(ModelDownloadTest, mainFileAlone_isAReadyModel) {
    EXPECT_EQ(fetch(item("bytes/3000000")), Phase::Done);
    EXPECT_TRUE(contents(mainFile()) == model);
    EXPECT_THAT(models(), UnorderedElementsAre("ggml-medium-q5_0.bin"));
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloadTest, bothItems_areFetchedAndTheArchiveUnpacked) {
    auto& made = home({item("slow/3000000/1"), encoder()});
    made.downloader.start();
    EXPECT_EQ(atRest(made), Phase::Done);
    EXPECT_TRUE(made.store.isReady());
    EXPECT_EQ(contents(data + "/Talvera/models/ggml-medium-encoder.mlmodelc/weights/w.bin"), "w");
    EXPECT_THAT(models(), UnorderedElementsAre("ggml-medium-q5_0.bin", "ggml-medium-encoder.mlmodelc"));
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloadTest, archiveThatIsNone_isToldInUnzipsWords) {
    auto broken = encoder("bytes/1000");
    broken.sha256 = sha(FileServer::pattern(1000));
    auto& made = home({item("bytes/3000000"), broken});
    made.downloader.start();
    const auto phase = atRest(made);
    EXPECT_TRUE(phase.message().startsWith("Extract failed: ")) << phase.message().toStdString();
    EXPECT_GT(phase.message().size(), 30);
    EXPECT_FALSE(made.store.hasEncoder());
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(ModelDownloadTest, signInPage_isNeverTakenForTheModel) {
    EXPECT_EQ(fetch(item("page/200")), Phase::failed("Main model checksum mismatch"));
    expectNoTrace();
    const auto portal = server.url("page/200", "http").toEncoded().toPercentEncoding();
    EXPECT_EQ(fetch(item("to/" + QString::fromLatin1(portal))),
              Phase::failed("Main model checksum mismatch"));
    expectNoTrace();
}

TEST_F(ModelDownloadTest, portalThatPretendsToBeTheServer_isNotTrusted) {
    EXPECT_TRUE(fetch(item("page/200", "stranger")).message().startsWith("No secure connection"));
    expectNoTrace();
}

TEST_F(ModelDownloadTest, cutConnection_failsAndARetryBringsTheModel) {
    EXPECT_EQ(fetch(item("short/3000000")), Phase::failed("The connection was cut off."));
    expectNoTrace();
    EXPECT_EQ(fetch(item("bytes/3000000")), Phase::Done);
}

TEST_F(ModelDownloadTest, moreThanTheModel_isNotTheModel) {
    EXPECT_EQ(fetch(item("chunked/3000001")), Phase::failed("Main model checksum mismatch"));
    EXPECT_EQ(fetch(item("endless")),
              Phase::failed("The download server sent far more than the speech model."));
    expectNoTrace();
}

TEST_F(ModelDownloadTest, stalledTransfer_failsAndItsRetryGoesThrough) {
    limits.silence = 300ms;
    auto& made = home({item("stall/3000000"), {}});
    made.downloader.start();
    EXPECT_EQ(atRest(made), Phase::failed("The download server has stopped answering."));
    expectNoTrace();
    server.letGo();
    made.downloader.retry();
    EXPECT_EQ(atRest(made), Phase::Done);
}

TEST_F(ModelDownloadTest, programThatEndsWhileItVerifies_readsNoMoreAndLeavesNothing) {
    auto& made = home({item("bytes/3000000"), {}});
    const auto watching = made.downloader.phase.observe([&](const Phase& phase) {
        if (phase == Phase::Verifying)
            made.background.finish();
    });
    made.downloader.start();
    EXPECT_EQ(atRest(made).kind(), Phase::Failed); // which nobody sees any more
    expectNoTrace();
}

TEST_F(ModelDownloadTest, redirectionsWithoutEnd_areToldPlainly) {
    EXPECT_EQ(fetch(item("loop")), Phase::failed("The download server sends us round in circles."));
    expectNoTrace();
}

TEST_F(ModelDownloadTest, diskWithoutRoom_isToldBeforeAnythingIsAskedFor) {
    const TinyDisk disk(data, 2 << 20);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    const auto phase = fetch(item("bytes/3000000"));
    EXPECT_EQ(phase,
              Phase::failed("There is not enough room on the disk: 70 MB are needed, and 2 MB are free."));
}

TEST_F(ModelDownloadTest, diskThatFillsUpMeanwhile_failsAndIsEmptyAfterwards) {
    const TinyDisk disk(data, 80 << 20);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    auto& made = home({item("stall/3000000"), {}});
    made.downloader.start();
    while (made.downloader.bytesWritten.get() == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const auto hog = data + "/hog"; // another program's
    EXPECT_THROW(made.files.write(hog, QByteArray(80 << 20, 'x')), PlatformError);
    QFile file(hog);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (file.write(QByteArray(4096, 'x')) == 4096) {
    }
    server.letGo();
    EXPECT_EQ(atRest(made), Phase::failed("The disk is full."));
    expectNoTrace();
    ASSERT_TRUE(file.remove());
    made.downloader.retry();
    EXPECT_EQ(atRest(made), Phase::Done);
}

/// The download in a process of its own.
class KilledDownloadTest : public ModelDownloadTest {
protected:
    void begin(const QString& path) {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(TALVERA_FETCH_MODEL, {data, server.url(path).toString(), sha(model),
                                            QString::number(modelSize), server.authority()});
    }
    QByteArray line() {
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead())
                return "nothing";
        }
        return process.readLine().trimmed();
    }
    void await(const QByteArray& wanted) {
        QByteArray last;
        while (last != wanted && last != "nothing")
            last = line();
        EXPECT_EQ(last, wanted);
    }
    /// The last line that it prints.
    QByteArray lastLine() {
        QByteArray last;
        for (auto next = line(); next != "nothing"; next = line())
            last = next;
        return last;
    }
    void kill() {
        process.kill();
        process.waitForFinished();
    }
    void signal(int number) { ::kill(static_cast<pid_t>(process.processId()), number); }

    QProcess process;
};

TEST_F(KilledDownloadTest, killedInTheMiddle_leavesNothingAndTheNextStartFetchesAgain) {
    begin("stall/3000000");
    await("bytes");
    kill();
    EXPECT_THAT(models(), IsEmpty());
    EXPECT_THAT(downloads(), IsEmpty());
    EXPECT_EQ(fetch(item("bytes/3000000")), Phase::Done);
}

TEST_F(KilledDownloadTest, killedWhileItVerifies_neverLeavesHalfAModelAndTheNextStartTidiesUp) {
    for (int i = 0; i < 5; ++i) {
        begin("bytes/3000000");
        await("verifying");
        kill();
        const auto placed = contents(mainFile());
        EXPECT_TRUE(placed.isEmpty() || placed == model);
        QFile::remove(mainFile());
    }
    EXPECT_EQ(fetch(item("bytes/3000000")), Phase::Done);
    EXPECT_THAT(downloads(), IsEmpty());
}

TEST_F(KilledDownloadTest, machineAsleepInTheMiddle_goesOnOrFailsInASentence) {
    begin("stall/3000000");
    await("bytes");
    signal(SIGSTOP);
    server.letGo(); // the server ends meanwhile
    signal(SIGCONT);
    EXPECT_EQ(lastLine(), "done");
}

TEST_F(KilledDownloadTest, connectionThatDiedDuringTheSleep_failsInASentence) {
    begin("stall/3000000");
    await("bytes");
    signal(SIGSTOP);
    server.process().kill();
    server.process().waitForFinished();
    signal(SIGCONT);
    EXPECT_EQ(lastLine(), "failed: The connection was cut off.");
    expectNoTrace();
}

TEST_F(KilledDownloadTest, secondProcess_leavesTheFilesOfTheFirst) {
    begin("stall/3000000");
    await("bytes");
    EXPECT_EQ(fetch(item("bytes/3000000")), Phase::Done); // on another display, say
    server.letGo();
    EXPECT_EQ(lastLine(), "done");
    EXPECT_TRUE(contents(mainFile()) == model);
    EXPECT_THAT(downloads(), IsEmpty());
}

} // namespace
