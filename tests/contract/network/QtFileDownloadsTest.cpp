// SPDX-License-Identifier: MIT
#include "linux/network/QtFileDownloads.h"
#include "FileServer.h"
#include "TinyDisk.h"
#include "Watch.h"
#include "concurrency/QtMainActor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class QtFileDownloadsTest : public testing::Test {
protected:
    QtFileDownloadsTest() {
        m_options.trustedToo = server.authority();
        m_options.limits.firstPause = 10ms;
        m_options.limits.longestPause = 40ms;
    }

    QtFileDownloads& network() {
        if (!m_network)
            m_network = std::make_unique<QtFileDownloads>(actor, m_options);
        return *m_network;
    }
    DownloadLimits& limits() { return m_options.limits; }

    std::unique_ptr<DownloadTask> begin(const QUrl& url, Watch& watch, qint64 sizeLimit = 100'000'000) {
        return network().download({url, directory, sizeLimit}, watch.events());
    }
    /// Runs until something that the download tells makes it true.
    template <typename Condition>
    static void until(Condition condition) {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    Watch ended(const QUrl& url, qint64 sizeLimit = 100'000'000) {
        Watch watch;
        const auto task = begin(url, watch, sizeLimit);
        until([&] { return watch.hasEnded(); });
        return watch;
    }
    /// How the download of that address fails.
    std::optional<DownloadFailure> failure(const QUrl& url) { return ended(url).failure; }

    /// What the download of that address brings.
    QByteArray contents(const QUrl& url) {
        const auto watch = ended(url);
        if (!watch.file)
            return "nothing";
        watch.file->moveTo(directory + "/file");
        QFile file(directory + "/file");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const auto bytes = file.readAll();
        file.remove();
        return bytes;
    }
    QStringList entries() const {
        return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QtMainActor actor;
    QTemporaryDir temporary;
    QString directory = temporary.path() + "/downloads";
    FileServer server;

private:
    QtFileDownloads::Options m_options;
    std::unique_ptr<QtFileDownloads> m_network;
};

TEST_F(QtFileDownloadsTest, request_tellsTheServerNothingButWhoAsks) {
    EXPECT_EQ(contents(server.url("bytes/1000")), FileServer::pattern(1000));
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests.front().at("agent"), "Talvera/1.0");
    EXPECT_EQ(requests.front().at("encoding"), "identity");
}

TEST_F(QtFileDownloadsTest, largeFile_comesWholeAndHasNoNameMeanwhile) {
    constexpr qint64 size = 20'000'000;
    Watch watch;
    const auto task = begin(server.url("bytes/20000000"), watch);
    until([&] {
        EXPECT_THAT(entries(), IsEmpty());
        return watch.hasEnded();
    });
    ASSERT_TRUE(watch.file);
    EXPECT_EQ(watch.written.back(), size);
    watch.file->moveTo(directory + "/file");
    EXPECT_EQ(QFileInfo(directory + "/file").size(), size);
    EXPECT_EQ(QFile::permissions(directory + "/file") & (QFile::ReadGroup | QFile::ReadOther), 0);
}

TEST_F(QtFileDownloadsTest, fileOfUnknownSize_comesWhole) {
    EXPECT_EQ(contents(server.url("chunked/300000")), FileServer::pattern(300'000));
}

TEST_F(QtFileDownloadsTest, progress_isToldSometimesAndAtTheEnd) {
    const auto watch = ended(server.url("slow/1000000/1"));
    ASSERT_TRUE(watch.file);
    EXPECT_GE(watch.written.size(), 5U);
    EXPECT_LE(watch.written.size(), 25U);
}

TEST_F(QtFileDownloadsTest, redirections_areFollowedAlsoToOtherServersAndWithoutTLS) {
    EXPECT_EQ(contents(server.url("hops/5/bytes/1000")), FileServer::pattern(1000));
    const auto elsewhere = server.url("bytes/1000", "http").toEncoded().toPercentEncoding();
    EXPECT_EQ(contents(server.url("to/" + QString::fromLatin1(elsewhere))), FileServer::pattern(1000));
}

TEST_F(QtFileDownloadsTest, redirectionsWithoutEnd_fail) {
    EXPECT_EQ(failure(server.url("loop")), DownloadFailure::RedirectLoop);
    EXPECT_EQ(failure(server.url("hops/21/bytes/1000")), DownloadFailure::RedirectLoop);
}

TEST_F(QtFileDownloadsTest, redirections_areAskedForOnceEach) {
    EXPECT_EQ(contents(server.url("hops/20/bytes/1000")), FileServer::pattern(1000));
    std::size_t requests = 0;
    while (requests < 21)
        requests += server.requests().size();
    EXPECT_EQ(requests, 21U);
}

TEST_F(QtFileDownloadsTest, redirectionToAFile_isNotFollowed) {
    EXPECT_EQ(failure(server.url("to/file%3A%2F%2F%2Fetc%2Fhostname")), DownloadFailure::Other);
}

TEST_F(QtFileDownloadsTest, errorsPage_isAFile) {
    for (const auto* page : {"page/200", "page/404", "page/403", "page/500", "page/503", "page/418"})
        EXPECT_TRUE(contents(server.url(page)).startsWith("<html>")) << page;
}

TEST_F(QtFileDownloadsTest, wrongCertificates_areNotTrusted) {
    for (const auto* port : {"stranger", "expired", "other"})
        EXPECT_EQ(failure(server.url("bytes/1000", port)), DownloadFailure::NotTrusted) << port;
}

TEST_F(QtFileDownloadsTest, redirectionToAWrongCertificate_isNotTrusted) {
    const auto elsewhere = server.url("bytes/1000", "stranger").toEncoded().toPercentEncoding();
    EXPECT_EQ(failure(server.url("to/" + QString::fromLatin1(elsewhere))), DownloadFailure::NotTrusted);
}

TEST_F(QtFileDownloadsTest, authorityOfTests_isTrustedByNobodyElse) {
    QtFileDownloads shipped(actor);
    Watch watch;
    const auto task = shipped.download({server.url("bytes/1000"), directory, 1000}, watch.events());
    until([&] { return watch.hasEnded(); });
    EXPECT_EQ(watch.failure, DownloadFailure::NotTrusted);
}

TEST_F(QtFileDownloadsTest, serverWithoutTLS_isNotTrusted) {
    auto url = server.url("bytes/1000", "http");
    url.setScheme("https");
    EXPECT_EQ(failure(url), DownloadFailure::NotTrusted);
}

TEST_F(QtFileDownloadsTest, lessThanAnnounced_isACutConnection) {
    EXPECT_EQ(failure(server.url("short/1000000")), DownloadFailure::ConnectionLost);
    EXPECT_EQ(failure(server.url("reset/1000000")), DownloadFailure::ConnectionLost);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(QtFileDownloadsTest, moreThanAnnounced_isWhatWasAnnounced) {
    EXPECT_EQ(contents(server.url("long/100000")), FileServer::pattern(100'000));
}

TEST_F(QtFileDownloadsTest, moreThanTheLimit_isCutOff) {
    EXPECT_EQ(ended(server.url("endless"), 5'000'000).failure, DownloadFailure::TooLarge);
    const auto announced = ended(server.url("stall/5000000"), 4'000'000);
    EXPECT_EQ(announced.failure, DownloadFailure::TooLarge); // before it has come
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(QtFileDownloadsTest, serverThatFallsSilent_isGivenUp) {
    limits().silence = 300ms;
    EXPECT_EQ(failure(server.url("stall/1000000")), DownloadFailure::ServerSilent);
    EXPECT_EQ(failure(server.url("silent")), DownloadFailure::ServerAway);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(QtFileDownloadsTest, slowServer_isNotSilent) {
    limits().silence = 500ms;
    EXPECT_EQ(contents(server.url("slow/1000000/2")), FileServer::pattern(1'000'000));
}

TEST_F(QtFileDownloadsTest, downloadThatTakesTooLong_isGivenUp) {
    limits().whole = 500ms;
    EXPECT_EQ(failure(server.url("slow/1000000/30")), DownloadFailure::TookTooLong);
}

TEST_F(QtFileDownloadsTest, nobodyThere_isToldAtOnce) {
    EXPECT_EQ(failure(server.url("bytes/1000", "closed")), DownloadFailure::ServerAway);
}

TEST_F(QtFileDownloadsTest, unknownServer_isWaitedForAsLongAsADownloadMayTake) {
    limits().whole = 1s;
    const auto watch = ended(QUrl("https://nowhere.invalid/model"));
    // Which of the two depends on what the desktop of the tests knows of its network.
    EXPECT_THAT(watch.failure, AnyOf(DownloadFailure::NoNetwork, DownloadFailure::ServerNotFound));
    EXPECT_THAT(watch.waits, ElementsAre(true));
}

TEST_F(QtFileDownloadsTest, cancelledWhileItWaits_isQuiet) {
    Watch watch;
    auto task = begin(QUrl("https://nowhere.invalid/model"), watch);
    until([&] { return !watch.waits.empty(); });
    task.reset();
    EXPECT_EQ(contents(server.url("bytes/1000")), FileServer::pattern(1000));
    EXPECT_FALSE(watch.hasEnded());
}

TEST_F(QtFileDownloadsTest, fullDisk_isToldAndEmptyAfterwards) {
    const TinyDisk disk(temporary.path() + "/disk", 1 << 20);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    directory = temporary.path() + "/disk";
    EXPECT_EQ(failure(server.url("bytes/3000000")), DownloadFailure::DiskFull);
    EXPECT_EQ(contents(server.url("bytes/900000")), FileServer::pattern(900'000)); // the room is free again
}

TEST_F(QtFileDownloadsTest, directoryThatCannotBe_isToldSo) {
    QFile file(temporary.path() + "/file");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    directory = file.fileName() + "/downloads";
    EXPECT_EQ(failure(server.url("bytes/1000")), DownloadFailure::CannotSave);
}

TEST_F(QtFileDownloadsTest, end_breaksOffWhatStillRuns) {
    Watch watch;
    {
        QtFileDownloads shortLived(actor, {.trustedToo = server.authority()});
        const auto task =
            shortLived.download({server.url("endless"), directory, 10'000'000'000}, watch.events());
        until([&] { return !watch.written.empty(); });
    }
    EXPECT_FALSE(watch.hasEnded());
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(QtFileDownloadsTest, proxyOfTheEnvironment_isUsed) {
    const auto proxy = QByteArrayLiteral("http://localhost:") + QByteArray::number(server.port("proxy"));
    qputenv("https_proxy", proxy);
    qunsetenv("no_proxy");
    auto url = server.url("bytes/1000");
    const auto bytes = contents(url);
    qunsetenv("https_proxy");
    EXPECT_EQ(bytes, FileServer::pattern(1000));
    const auto requests = server.requests();
    ASSERT_FALSE(requests.empty());
    EXPECT_EQ(requests.front().value("verb", ""), "CONNECT");
}

} // namespace
