// SPDX-License-Identifier: MIT
// What a recorder may rely on, whether the microphone is a sound server's or a test's.
#include "Ear.h"
#include "FakeAudioEngine.h"
#include "SoundServer.h"
#include "Voice.h"
#include "concurrency/QtMainActor.h"
#include "linux/pulse/PulseAudioInput.h"
#include "listening.h"
#include "platform/system/PlatformError.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

constexpr int rate = 48000;

class FakeSubject {
public:
    FakeSubject() { input.format = {rate, 1, SampleType::Int16}; }

    AudioEngine& engine() { return input; }
    void speak(const std::vector<std::int16_t>& samples) { input.deliver(samples); }
    void breakDown() { input.startFailure = PlatformError(AudioEngineFailure::NoServer); }
    void mend() { input.startFailure.reset(); }

private:
    FakeAudioEngine input;
};

template <SoundServer::Kind kind>
class ServerSubject {
public:
    ServerSubject() { mend(); }

    AudioEngine& engine() { return *m_input; }

    void speak(const std::vector<std::int16_t>& samples) { m_voice->sayAndWait(samples); }

    void breakDown() {
        m_voice.reset();
        m_server.kill();
        while (m_connection->status() == AuthorizationStatus::Authorized)
            ;
    }

    void mend() {
        m_server.start();
        m_server.addMicrophone();
        m_voice = std::make_unique<Voice>(m_server.address(), m_server.feedOf(), rate);
        if (!m_connection) {
            m_connection = std::make_unique<PulseConnection>(m_actor, m_server.address());
            m_connection->waitForAnswer(10s);
            m_input = std::make_unique<PulseAudioInput>(*m_connection);
        }
    }

private:
    int m_argumentCount = 1;
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argumentCount, m_arguments};
    QtMainActor m_actor;
    SoundServer m_server{kind};
    std::unique_ptr<Voice> m_voice;
    std::unique_ptr<PulseConnection> m_connection;
    std::unique_ptr<PulseAudioInput> m_input;
};

template <typename Subject>
class AudioEngineContract : public testing::Test {
protected:
    static std::vector<std::int16_t> word() { return tone(440, 0.2, 0.5, rate); }

    void installTap(Ear& listener) { engine.installTap(bufferFrames, engine.inputFormat(), listener.tap()); }

    /// How much of words that were said has been heard, in words.
    static double wordsIn(const Ear& listener) {
        return static_cast<double>(spokenPart(listener.heard().samples).size()) /
               static_cast<double>(word().size());
    }

    static constexpr std::size_t bufferFrames = 1024;
    Subject subject;
    AudioEngine& engine = subject.engine();
    Ear ear;
};

using Subjects = testing::Types<FakeSubject, ServerSubject<SoundServer::Kind::PulseAudio>,
                                ServerSubject<SoundServer::Kind::PipeWire>>;

struct SubjectNames {
    template <typename Subject>
    static std::string GetName(int) {
        if (std::is_same_v<Subject, FakeSubject>)
            return "Fake";
        return std::is_same_v<Subject, ServerSubject<SoundServer::Kind::PulseAudio>> ? "PulseAudio"
                                                                                     : "PipeWire";
    }
};

TYPED_TEST_SUITE(AudioEngineContract, Subjects, SubjectNames);

} // namespace

TYPED_TEST(AudioEngineContract, whatIsSaidBetweenStartAndRelease_arrivesWhole) {
    this->installTap(this->ear);
    this->engine.start();
    this->subject.speak(this->word());
    this->engine.removeTap();
    this->engine.stop();

    EXPECT_NEAR(this->wordsIn(this->ear), 1.0, 0.02);
    const auto heard = this->ear.heard();
    EXPECT_EQ(heard.format, this->engine.inputFormat());
    EXPECT_LE(*std::max_element(heard.bufferLengths.begin(), heard.bufferLengths.end()), this->bufferFrames);
}

TYPED_TEST(AudioEngineContract, removedTap_isNotCalledAnyMore) {
    this->installTap(this->ear);
    this->engine.start();
    this->subject.speak(this->word());
    this->engine.removeTap();
    const auto heard = this->ear.heard().samples.size();
    this->subject.speak(this->word());
    EXPECT_EQ(this->ear.heard().samples.size(), heard);
    this->engine.stop();
}

TYPED_TEST(AudioEngineContract, tapBeforeStartAndAfterStop_hearsNothing) {
    this->installTap(this->ear);
    this->subject.speak(this->word());
    EXPECT_TRUE(this->ear.heard().samples.empty());
    this->engine.start();
    this->engine.stop();
    const auto heard = this->ear.heard().samples.size();
    this->subject.speak(this->word());
    EXPECT_EQ(this->ear.heard().samples.size(), heard);
}

TYPED_TEST(AudioEngineContract, secondStart_changesNothing) {
    this->installTap(this->ear);
    this->engine.start();
    this->engine.start();
    this->subject.speak(this->word());
    this->engine.removeTap();
    this->engine.stop();
    EXPECT_NEAR(this->wordsIn(this->ear), 1.0, 0.02);
}

TYPED_TEST(AudioEngineContract, secondTap_replacesTheFirst) {
    Ear first;
    this->installTap(first);
    this->installTap(this->ear);
    this->engine.start();
    this->subject.speak(this->word());
    this->engine.removeTap();
    EXPECT_TRUE(first.heard().samples.empty());
    EXPECT_NEAR(this->wordsIn(this->ear), 1.0, 0.02);
}

TYPED_TEST(AudioEngineContract, recordingAfterRecording_hearsItsOwnWordsAlone) {
    for (int recording = 0; recording < 3; ++recording) {
        Ear own;
        this->installTap(own);
        this->engine.start();
        this->subject.speak(this->word());
        this->engine.removeTap();
        this->engine.stop();
        EXPECT_NEAR(this->wordsIn(own), 1.0, 0.02);
    }
}

TYPED_TEST(AudioEngineContract, failedStart_saysWhoseFaultAndKeepsTheTap) {
    this->installTap(this->ear);
    this->subject.breakDown();
    try {
        this->engine.start();
        FAIL() << "it can't have started";
    } catch (const PlatformError& error) {
        EXPECT_TRUE(error.as<AudioEngineFailure>()) << error.what();
    }
    this->subject.mend();
    this->engine.start();
    this->subject.speak(this->word());
    this->engine.removeTap();
    EXPECT_NEAR(this->wordsIn(this->ear), 1.0, 0.02);
}

TYPED_TEST(AudioEngineContract, removingAndStoppingWithNothingThere_isHarmless) {
    this->engine.removeTap();
    this->engine.stop();
    this->installTap(this->ear);
    this->engine.removeTap();
    this->engine.removeTap();
    this->engine.stop();
    this->engine.stop();
    EXPECT_TRUE(this->ear.heard().samples.empty());
}
