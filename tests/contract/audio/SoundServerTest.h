// SPDX-License-Identifier: MIT
#pragma once

#include "Ear.h"
#include "SoundServer.h"
#include "Voice.h"
#include "concurrency/QtMainActor.h"
#include "linux/pulse/PulseAudioInput.h"
#include "linux/pulse/PulseMicrophonePermission.h"
#include "platform/system/PlatformError.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace talvera::test {

/// A test against a real sound server, once for each kind. The server is not started yet.
class SoundServerTest : public testing::TestWithParam<SoundServer::Kind> {
protected:
    using Clock = std::chrono::steady_clock;

    /// Runs the main thread's event loop until `done` holds; false after ten seconds.
    bool runUntil(const std::function<bool()>& done) {
        bool late = false;
        const auto timer = actor.startTimer(std::chrono::seconds(10), [&late] { late = true; });
        while (!done() && !late)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        actor.cancelTimer(timer);
        return done();
    }

    /// The connection that the process has; made with the first call.
    PulseConnection& connection() {
        if (!m_connection) {
            m_connection.emplace(actor, server.address());
            m_connection->waitForAnswer(std::chrono::seconds(10));
        }
        return *m_connection;
    }

    /// Asks again and again, as the readiness monitor does, until the answer is `status`.
    testing::AssertionResult becomes(AuthorizationStatus status) {
        const auto deadline = Clock::now() + std::chrono::seconds(10);
        while (connection().status() != status) {
            if (Clock::now() > deadline)
                return testing::AssertionFailure() << "is still " << static_cast<int>(connection().status());
            QCoreApplication::processEvents();
        }
        return testing::AssertionSuccess();
    }

    /// The code of the error that start() throws; nothing if it doesn't.
    static std::optional<AudioEngineFailure> failureOfStart(AudioEngine& engine) {
        try {
            engine.start();
        } catch (const PlatformError& error) {
            const auto failure = error.as<AudioEngineFailure>();
            EXPECT_TRUE(failure) << error.what();
            return failure;
        }
        return std::nullopt;
    }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtMainActor actor;
    SoundServer server{GetParam()};

private:
    std::optional<PulseConnection> m_connection;
};

/// The same with a microphone at `rate`, and what is done to it again and again.
class MicrophoneTest : public SoundServerTest {
protected:
    static constexpr int rate = 48000;

    void startWithMicrophone(int microphoneRate = rate, int channels = 1) {
        server.start();
        server.addMicrophone(QStringLiteral("microphone"), microphoneRate, channels);
    }

    std::unique_ptr<Voice> speak(int microphoneRate = rate, int channels = 1) {
        return std::make_unique<Voice>(server.address(), server.feedOf(), microphoneRate, channels);
    }

    void record(AudioEngine& engine, Ear& ear, std::size_t bufferFrames = 4096) {
        engine.installTap(bufferFrames, engine.inputFormat(), ear.tap());
        engine.start();
    }

    void stopRecording(AudioEngine& engine) {
        engine.removeTap();
        engine.stop();
    }

    /// A whole recording of at least so many frames.
    void recordFrames(AudioEngine& engine, std::size_t frames) {
        Ear ear;
        record(engine, ear);
        EXPECT_TRUE(ear.waitForFrames(frames));
        stopRecording(engine);
    }
};

inline std::string nameOfKind(const testing::TestParamInfo<SoundServer::Kind>& info) {
    return info.param == SoundServer::Kind::PulseAudio ? "PulseAudio" : "PipeWire";
}

/// For the test framework.
inline void PrintTo(SoundServer::Kind kind, std::ostream* out) {
    *out << nameOfKind({kind, 0});
}

} // namespace talvera::test
