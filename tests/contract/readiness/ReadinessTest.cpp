// SPDX-License-Identifier: MIT
#include "FakeLanguageModel.h"
#include "FakeProgramActivation.h"
#include "FakeSettingsPanels.h"
#include "SoundServer.h"
#include "concurrency/QtMainActor.h"
#include "linux/pulse/PulseConnection.h"
#include "linux/pulse/PulseMicrophonePermission.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/X11SessionAccess.h"
#include "shell/readiness/ReadinessMonitor.h"

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

/// The monitor on what is really there: a sound server and a window manager that come and go.
class ReadinessTest : public testing::TestWithParam<SoundServer::Kind> {
protected:
    using Clock = std::chrono::steady_clock;

    ~ReadinessTest() override { endWindowManager(); }

    void start() {
        connection.emplace(actor, server.address());
        connection->waitForAnswer(10s);
        microphone.emplace(*connection);
        monitor.emplace(
            ReadinessMonitor::Parts{actor, *microphone, access, languageModel, settingsPanels, activation});
    }
    void startWindowManager() {
        manager.setProcessEnvironment([] {
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
            return environment;
        }());
        manager.start(QStringLiteral("openbox"), {});
        ASSERT_TRUE(manager.waitForStarted());
        while (!access.lacks().empty())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    void endWindowManager() {
        manager.kill();
        manager.waitForFinished();
    }

    /// Lets the event loop run until `seen` holds; how long that took.
    Clock::duration timeUntil(const std::function<bool()>& seen) {
        const auto start = Clock::now();
        bool late = false;
        const auto timer = actor.startTimer(20s, [&late] { late = true; });
        while (!seen() && !late)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        actor.cancelTimer(timer);
        return Clock::now() - start;
    }
    bool hasMicrophone() const { return monitor->micStatus.get() == AuthorizationStatus::Authorized; }

    /// The interval of the poll, and what a busy machine may add to it.
    static constexpr auto soon = 2s + 8s;

    QtMainActor actor;
    SoundServer server{GetParam()};
    std::unique_ptr<X11Connection> x11 = X11Server().connect();
    X11SessionAccess access{*x11};
    FakeLanguageModel languageModel;
    FakeSettingsPanels settingsPanels;
    FakeProgramActivation activation;
    std::optional<PulseConnection> connection;
    std::optional<PulseMicrophonePermission> microphone;
    std::optional<ReadinessMonitor> monitor;
    QProcess manager;
};

TEST_P(ReadinessTest, everythingThere_isReadyAndRests) {
    server.start();
    server.addMicrophone();
    startWindowManager();
    start();
    EXPECT_TRUE(monitor->isReady());
    EXPECT_TRUE(monitor->inputMonitoringGranted.get());
    EXPECT_EQ(monitor->aiState.get(), AIAvailabilityState::DeviceNotEligible);
    EXPECT_FALSE(monitor->isPolling());
}

TEST_P(ReadinessTest, microphonePluggedInAndOut_isSeenWithinTwoSeconds) {
    server.start();
    startWindowManager();
    start();
    EXPECT_FALSE(hasMicrophone());
    EXPECT_TRUE(monitor->isPolling());
    server.addMicrophone();
    EXPECT_LT(timeUntil([this] { return hasMicrophone(); }), soon);
    EXPECT_FALSE(monitor->isPolling());
    server.removeMicrophone();
    EXPECT_LT(timeUntil([this] { return !hasMicrophone(); }), soon);
    EXPECT_TRUE(monitor->isPolling());
}

TEST_P(ReadinessTest, soundServerLostAndBack_isSeenWithinTwoSeconds) {
    server.start();
    server.addMicrophone();
    startWindowManager();
    start();
    ASSERT_TRUE(hasMicrophone());
    server.kill();
    EXPECT_LT(timeUntil([this] { return !hasMicrophone(); }), soon);
    server.start();
    server.addMicrophone();
    EXPECT_LT(timeUntil([this] { return hasMicrophone(); }), soon);
    EXPECT_FALSE(monitor->isPolling());
}

TEST_P(ReadinessTest, windowManagerThatComes_isSeenWithinTwoSecondsAndEndsThePoll) {
    server.start();
    server.addMicrophone();
    start();
    EXPECT_FALSE(monitor->axTrusted.get());
    EXPECT_TRUE(monitor->inputMonitoringGranted.get());
    EXPECT_TRUE(monitor->isPolling());
    startWindowManager();
    EXPECT_LT(timeUntil([this] { return monitor->axTrusted.get(); }), soon);
    EXPECT_FALSE(monitor->isPolling());
}

TEST_P(ReadinessTest, windowManagerThatGoesAtRest_isSeenWhenTheUserTurnsToUs) {
    server.start();
    server.addMicrophone();
    startWindowManager();
    start();
    ASSERT_TRUE(monitor->axTrusted.get());
    endWindowManager();
    EXPECT_TRUE(monitor->axTrusted.get()); // nothing has looked
    activation.activate();
    timeUntil([this] { return !monitor->axTrusted.get(); });
    EXPECT_FALSE(monitor->axTrusted.get());
    EXPECT_TRUE(monitor->isPolling());
}

INSTANTIATE_TEST_SUITE_P(SoundServers, ReadinessTest,
                         testing::Values(SoundServer::Kind::PulseAudio, SoundServer::Kind::PipeWire),
                         [](const auto& kind) {
                             return kind.param == SoundServer::Kind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

} // namespace
