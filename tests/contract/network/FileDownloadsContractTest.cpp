// SPDX-License-Identifier: MIT
#include "FakeFileDownloads.h"
#include "FileServer.h"
#include "SimulatedMainActor.h"
#include "Watch.h"
#include "concurrency/QtMainActor.h"
#include "linux/network/QtFileDownloads.h"
#include "linux/posix/PosixFileSystem.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using namespace talvera;
using namespace talvera::test;

namespace {

const QByteArray contents = FileServer::pattern(300'000);

/// Servers in the mind.
struct Imagined {
    SimulatedMainActor actor;
    FakeFileSystem disk{{"/downloads"}};
    FakeFileDownloads network{actor, disk};
    FileSystem& files = disk;
    QString directory = "/downloads";

    QUrl answering(const FakeReply& reply) {
        const QUrl url("https://a.example/" + QString::number(++served));
        network.serve(url, reply);
        return url;
    }
    QUrl wholeFile() { return answering({.bytes = contents}); }
    QUrl cutFile() { return answering({.failure = DownloadFailure::ConnectionLost}); }
    QUrl fileOfAStranger() { return answering({.failure = DownloadFailure::NotTrusted}); }
    QUrl fileOfNobody() { return answering({.failure = DownloadFailure::ServerAway}); }
    void turn() { actor.runToRest(seconds(60)); }

    int served = 0;
};

/// Servers on this machine.
struct Real {
    QtMainActor actor;
    PosixFileSystem disk;
    QTemporaryDir temporary;
    FileServer server;
    QtFileDownloads network{actor, {.trustedToo = server.authority()}};
    FileSystem& files = disk;
    QString directory = temporary.path();

    QUrl wholeFile() { return server.url("bytes/300000"); }
    QUrl cutFile() { return server.url("short/300000"); }
    QUrl fileOfAStranger() { return server.url("bytes/300000", "stranger"); }
    QUrl fileOfNobody() { return server.url("bytes/300000", "closed"); }
    void turn() { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }
};

template <typename T>
class FileDownloadsContract : public testing::Test {
protected:
    DownloadRequest request(const QUrl& url) { return {url, subject.directory, 1'000'000}; }
    void untilEnded(const Watch& watch) {
        while (!watch.hasEnded())
            subject.turn();
    }
    QString at(const char* name) { return subject.directory + '/' + name; }

    T subject;
};

using Subjects = testing::Types<Imagined, Real>;
TYPED_TEST_SUITE(FileDownloadsContract, Subjects);

TYPED_TEST(FileDownloadsContract, file_comesWholeAndInLaterTurns) {
    Watch watch;
    const auto task =
        this->subject.network.download(this->request(this->subject.wholeFile()), watch.events());
    EXPECT_FALSE(watch.hasEnded());
    EXPECT_TRUE(watch.written.empty());
    this->untilEnded(watch);
    ASSERT_TRUE(watch.file);
    EXPECT_TRUE(std::is_sorted(watch.written.begin(), watch.written.end()));
    EXPECT_EQ(watch.written.back(), contents.size());
    watch.file->moveTo(this->at("a"));
    EXPECT_TRUE(this->subject.files.read(this->at("a")) == contents);
    EXPECT_TRUE(watch.waits.empty());
}

TYPED_TEST(FileDownloadsContract, fileWithoutAName_goesWithItsObject) {
    Watch watch;
    const auto task =
        this->subject.network.download(this->request(this->subject.wholeFile()), watch.events());
    this->untilEnded(watch);
    watch.file.reset();
    this->subject.files.remove(this->subject.directory); // which holds nothing
}

TYPED_TEST(FileDownloadsContract, fileThatCannotGetItsName_isToldSo) {
    Watch watch;
    const auto task =
        this->subject.network.download(this->request(this->subject.wholeFile()), watch.events());
    this->untilEnded(watch);
    try {
        watch.file->moveTo(this->at("none/a"));
        ADD_FAILURE();
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.as<DownloadFailure>(), DownloadFailure::CannotSave);
    }
}

TYPED_TEST(FileDownloadsContract, twoDownloads_runSideBySide) {
    Watch first;
    Watch second;
    const auto one = this->subject.network.download(this->request(this->subject.wholeFile()), first.events());
    const auto two =
        this->subject.network.download(this->request(this->subject.wholeFile()), second.events());
    this->untilEnded(first);
    this->untilEnded(second);
    EXPECT_TRUE(first.file && second.file);
}

TYPED_TEST(FileDownloadsContract, failures_areToldOnceAndLeaveNothing) {
    const std::vector<std::pair<QUrl, DownloadFailure>> cases{
        {this->subject.cutFile(), DownloadFailure::ConnectionLost},
        {this->subject.fileOfAStranger(), DownloadFailure::NotTrusted},
        {this->subject.fileOfNobody(), DownloadFailure::ServerAway}};
    for (const auto& [url, failure] : cases) {
        Watch watch;
        const auto task = this->subject.network.download(this->request(url), watch.events());
        this->untilEnded(watch);
        EXPECT_EQ(watch.failure, failure) << url.toString().toStdString();
        EXPECT_EQ(watch.ends, 1);
    }
    this->subject.files.remove(this->subject.directory);
}

TYPED_TEST(FileDownloadsContract, moreThanTheLimit_isAFailure) {
    Watch watch;
    auto request = this->request(this->subject.wholeFile());
    request.sizeLimit = contents.size() - 1;
    const auto task = this->subject.network.download(request, watch.events());
    this->untilEnded(watch);
    EXPECT_EQ(watch.failure, DownloadFailure::TooLarge);
}

TYPED_TEST(FileDownloadsContract, cancelledDownload_tellsNothingMore) {
    Watch cancelled;
    Watch other;
    const auto task =
        this->subject.network.download(this->request(this->subject.wholeFile()), cancelled.events());
    task->cancel();
    task->cancel();
    const auto later =
        this->subject.network.download(this->request(this->subject.wholeFile()), other.events());
    this->untilEnded(other);
    EXPECT_FALSE(cancelled.hasEnded());
    EXPECT_TRUE(cancelled.written.empty());
}

TYPED_TEST(FileDownloadsContract, downloadThatIsLetGo_tellsNothingMore) {
    Watch gone;
    Watch other;
    this->subject.network.download(this->request(this->subject.wholeFile()), gone.events());
    const auto later =
        this->subject.network.download(this->request(this->subject.wholeFile()), other.events());
    this->untilEnded(other);
    EXPECT_FALSE(gone.hasEnded());
}

TYPED_TEST(FileDownloadsContract, abandonedFiles_areRemovedAndThoseInUseStay) {
    Watch watch;
    const auto task =
        this->subject.network.download(this->request(this->subject.wholeFile()), watch.events());
    this->untilEnded(watch);
    watch.file->moveTo(this->at("used"));
    this->subject.files.createDirectories(this->at("directory"));
    this->subject.files.write(this->at("left"), "half a model");
    this->subject.files.write(this->at("directory/a"), "x");

    this->subject.network.removeAbandoned(this->subject.directory);
    EXPECT_TRUE(this->subject.files.exists(this->at("used")));
    EXPECT_FALSE(this->subject.files.exists(this->at("left")));
    EXPECT_TRUE(this->subject.files.exists(this->at("directory/a")));

    watch.file.reset();
    this->subject.network.removeAbandoned(this->subject.directory);
    EXPECT_FALSE(this->subject.files.exists(this->at("used")));
    this->subject.network.removeAbandoned(this->at("none"));
}

} // namespace
