// SPDX-License-Identifier: MIT
#include "linux/network/HttpTransfer.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <vector>

using namespace talvera;
using testing::ElementsAre;

namespace {

/// A transfer from a server that no name server knows, on a desktop that knows of its network what the test
/// says.
class HttpTransferTest : public testing::Test {
protected:
    void begin(NetworkPresence first) {
        presence = first;
        limits.firstPause =
            std::chrono::hours(1); // longer than the test: what wakes it is word of the network
        limits.longestPause = std::chrono::hours(1);
        transfer = std::make_unique<HttpTransfer>(
            HttpTransfer::Surroundings{manager, tls, limits,
                                       [this] {
                                           ++asked;
                                           return presence;
                                       }},
            DownloadRequest{QUrl("https://nowhere.invalid/model"), directory.path(), 1000},
            HttpTransfer::Report{
                .wrote = [](qint64) {},
                .waiting = [this](bool waiting) { waits.push_back(waiting); },
                .finished = [](std::unique_ptr<UnnamedFile>) { ADD_FAILURE(); },
                .failed = [this](const PlatformError& error) { failure = error.as<DownloadFailure>(); }});
        transfer->begin();
        untilAttemptFailed();
    }
    void untilAttemptFailed() {
        asked = 0;
        while (asked == 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void tell(NetworkPresence now) {
        presence = now;
        transfer->networkChanged();
    }

    QNetworkAccessManager manager;
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    DownloadLimits limits;
    QTemporaryDir directory;
    NetworkPresence presence = NetworkPresence::Unknown;
    int asked = 0; ///< how often the transfer wanted to know of the network
    std::vector<bool> waits;
    std::optional<DownloadFailure> failure;
    std::unique_ptr<HttpTransfer> transfer;
};

TEST_F(HttpTransferTest, networkThatIsAway_isWaitedForWithoutAnAttempt) {
    begin(NetworkPresence::Away);
    EXPECT_THAT(waits, ElementsAre(true));
    EXPECT_FALSE(failure);
    asked = 0;
    tell(NetworkPresence::Away);
    EXPECT_EQ(asked, 1); // and nothing has been sent: that would ask again when it fails
    EXPECT_FALSE(failure);
}

TEST_F(HttpTransferTest, networkThatComes_isTriedAtOnceAndNotForEver) {
    begin(NetworkPresence::Away);
    for (int attempts = 1; attempts < 3; ++attempts) {
        EXPECT_FALSE(failure) << attempts;
        tell(NetworkPresence::There);
        untilAttemptFailed();
    }
    EXPECT_EQ(failure, DownloadFailure::ServerNotFound);
    EXPECT_THAT(waits, ElementsAre(true));
}

TEST_F(HttpTransferTest, networkOfWhichNothingIsKnown_isWaitedFor) {
    begin(NetworkPresence::Unknown);
    for (int attempts = 1; attempts < 5; ++attempts) {
        tell(NetworkPresence::Unknown);
        untilAttemptFailed();
    }
    EXPECT_FALSE(failure);
}

} // namespace
