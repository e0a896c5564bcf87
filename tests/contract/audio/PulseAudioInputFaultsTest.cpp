// SPDX-License-Identifier: MIT
// What can go wrong below a recording: servers that are killed, frozen or missing, microphones that go away,
// and loudspeakers in a microphone's place. Nothing may hang, and what had been heard is kept.
#include "SoundServerTest.h"
#include "listening.h"
#include "shortestOf.h"

#include <atomic>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

class PulseAudioInputFaultsTest : public MicrophoneTest {
protected:
    void expectSilence(AudioEngine& input) {
        Ear ear;
        record(input, ear);
        ASSERT_TRUE(ear.waitForFrames(rate / 4));
        input.removeTap();
        EXPECT_TRUE(isSilent(ear.heard().samples));
    }
};

} // namespace

TEST_P(PulseAudioInputFaultsTest, monitorAsDefault_isPassedOverForAMicrophone) {
    server.start();
    server.addDeafMicrophone(QStringLiteral("microphone"));
    server.makeDefaultSource(QStringLiteral("speaker.monitor"));
    Voice music(server.address(), "speaker", rate, 2);
    music.count();
    PulseAudioInput input(connection());
    EXPECT_EQ(connection().status(), AuthorizationStatus::Authorized);
    expectSilence(input);
}

TEST_P(PulseAudioInputFaultsTest, recordingThatTheServerSendsToALoudspeaker_isBroughtBackToTheMicrophone) {
    server.start();
    server.addDeafMicrophone(QStringLiteral("microphone"));
    Voice music(server.address(), "speaker", rate, 2);
    music.count();
    PulseAudioInput input(connection());
    {
        // The server changes its mind without our hearing of it in time.
        const PulseLoop::Lock notYet(connection().loop());
        server.makeDefaultSource(QStringLiteral("speaker.monitor"));
    }
    expectSilence(input);
}

TEST_P(PulseAudioInputFaultsTest, noSource_isNoInputAtOnce) {
    server.start();
    PulseAudioInput input(connection());
    EXPECT_EQ(input.inputFormat(), AudioFormat{});
    EXPECT_LT(shortestOf(5, [&] { EXPECT_EQ(failureOfStart(input), AudioEngineFailure::NoInput); }), 500ms);
}

TEST_P(PulseAudioInputFaultsTest, serverThatIsNotThere_failsAtOnce) {
    PulseAudioInput input(connection());
    const auto attempt = [&] {
        EXPECT_EQ(input.inputFormat(), AudioFormat{});
        input.installTap(4096, {rate, 1, SampleType::Float32}, [](const AudioBuffer&) {});
        EXPECT_EQ(failureOfStart(input), AudioEngineFailure::NoServer);
        input.removeTap();
        input.stop();
    };
    EXPECT_LT(shortestOf(5, attempt), 500ms);
}

TEST_P(PulseAudioInputFaultsTest, frozenServer_timesOutAndServesAgainAfterwards) {
    startWithMicrophone();
    PulseAudioInput input(connection());
    server.freeze();
    Ear ear;
    input.installTap(4096, input.inputFormat(), ear.tap());
    EXPECT_EQ(failureOfStart(input), AudioEngineFailure::TimedOut);

    server.thaw();
    EXPECT_TRUE(becomes(AuthorizationStatus::Authorized));
    record(input, ear);
    EXPECT_TRUE(ear.waitForFrames(4096));
}

TEST_P(PulseAudioInputFaultsTest, serverFreezesDuringARecording_releaseReturnsWithWhatCame) {
    startWithMicrophone();
    const auto voice = speak();
    voice->count();
    PulseAudioInput input(connection());
    Ear ear;
    record(input, ear, 64);
    ASSERT_TRUE(ear.waitForFrames(rate / 4));
    server.freeze();
    stopRecording(input);
    EXPECT_GE(ear.heard().samples.size(), static_cast<std::size_t>(rate / 4));

    server.thaw(); // its late answers must find nobody
    Ear next;
    record(input, next);
    EXPECT_TRUE(next.waitForFrames(4096));
}

TEST_P(PulseAudioInputFaultsTest, serverDiesDuringARecording_keepsWhatCameDownToTheRest) {
    startWithMicrophone();
    const auto voice = speak();
    voice->count();
    PulseAudioInput input(connection());
    std::atomic<int> lost = 0;
    input.setOnLost([&] { ++lost; });
    Ear ear;
    record(input, ear);
    ASSERT_TRUE(ear.waitForFrames(3 * 4096));
    EXPECT_EQ(lost, 0);
    server.kill();
    ASSERT_TRUE(ear.waitUntil([](const Ear::Heard& heard) { return heard.bufferLengths.back() < 4096; }))
        << "the rest comes by itself";
    stopRecording(input);
    EXPECT_EQ(Voice::gapsIn(ear.heard().samples), 0);
    EXPECT_EQ(lost, 1);
}

TEST_P(PulseAudioInputFaultsTest, serverRestarts_nextRecordingWorks) {
    startWithMicrophone();
    PulseAudioInput input(connection());
    std::atomic<int> lost = 0;
    input.setOnLost([&] { ++lost; });
    recordFrames(input, 4096);
    for (int restart = 0; restart < 3; ++restart) {
        server.kill();
        EXPECT_TRUE(becomes(AuthorizationStatus::Denied));
        startWithMicrophone();
        recordFrames(input, 4096); // with no question for the status in between
    }
    EXPECT_EQ(lost, 0) << "nobody was recording";
}

TEST_P(PulseAudioInputFaultsTest, microphoneUnplugged_endsTheRecordingAndNeverListensToTheLoudspeaker) {
    startWithMicrophone();
    const auto voice = speak();
    Voice music(server.address(), "speaker", 48000, 2);
    PulseAudioInput input(connection());
    std::atomic<int> lost = 0;
    input.setOnLost([&] { ++lost; });
    Ear ear;
    record(input, ear);
    ASSERT_TRUE(ear.waitForFrames(2 * 4096));
    music.count();
    server.removeMicrophone();
    EXPECT_TRUE(becomes(AuthorizationStatus::Denied));
    stopRecording(input);
    const auto samples = ear.heard().samples;
    EXPECT_GE(samples.size(), 2U * 4096);
    EXPECT_TRUE(isSilent(samples));
    EXPECT_EQ(lost, 1);
}

TEST_P(PulseAudioInputFaultsTest, suspendedMicrophone_releaseReturns) {
    startWithMicrophone();
    PulseAudioInput input(connection());
    Ear ear;
    record(input, ear);
    ASSERT_TRUE(ear.waitForFrames(4096));
    server.control({QStringLiteral("suspend-source"), QStringLiteral("microphone"), QStringLiteral("1")});
    stopRecording(input);
}

INSTANTIATE_TEST_SUITE_P(, PulseAudioInputFaultsTest,
                         testing::Values(SoundServer::Kind::PulseAudio, SoundServer::Kind::PipeWire),
                         nameOfKind);
