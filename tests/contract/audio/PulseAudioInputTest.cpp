// SPDX-License-Identifier: MIT
// Captures from the virtual microphone of a sound server: nothing may be lost, and nothing may go on at rest.
#include "SoundServerTest.h"
#include "leastOf.h"
#include "listening.h"

#include <QDir>
#include <QFile>

#include <algorithm>

#include <sys/prctl.h>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

using PulseAudioInputTest = MicrophoneTest;

std::size_t entriesOf(const char* directory) {
    return static_cast<std::size_t>(QDir(QString::fromLatin1(directory))
                                        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                                        .size());
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true; // memory is kept back to catch its later use
#else
constexpr bool sanitized = false;
#endif

/// How often the thread that talks to the server has been woken up so far.
long wakeUpsOfAudioThread() {
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const auto& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(tasks.filePath(task) + QStringLiteral("/status"));
        if (!status.open(QFile::ReadOnly))
            continue;
        const auto text = status.readAll();
        const auto switches = text.indexOf("\nvoluntary_ctxt_switches:");
        if (text.startsWith("Name:\taudio\n") && switches >= 0)
            return text.mid(switches).trimmed().split('\n').first().split('\t').last().toLong();
    }
    throw std::runtime_error("no audio thread");
}

long residentKilobytes() {
    QFile status(QStringLiteral("/proc/self/statm"));
    return status.open(QFile::ReadOnly) ? status.readAll().split(' ').at(1).toLong() * 4 : 0;
}

} // namespace

TEST_P(PulseAudioInputTest, tone_arrivesWithItsLengthPitchAndLevel) {
    startWithMicrophone();
    const auto voice = speak();
    PulseAudioInput input(connection());
    Ear ear;
    record(input, ear);
    const auto said = tone(440, 1.0, 0.5, rate);
    voice->sayAndWait(said);
    stopRecording(input);

    const auto heard = spokenPart(ear.heard().samples);
    EXPECT_NEAR(static_cast<double>(heard.size()), static_cast<double>(said.size()), 100);
    EXPECT_NEAR(frequencyOf(heard, rate), 440, 1);
    EXPECT_NEAR(levelOf(heard, rate), levelOf(said, rate), 0.01 * levelOf(said, rate));
}

TEST_P(PulseAudioInputTest, eachFrameOfTheMicrophone_arrivesOnceAndInOrder) {
    startWithMicrophone();
    const auto voice = speak();
    voice->count();
    PulseAudioInput input(connection());
    const auto gapsOfARecording = [&] {
        Ear ear;
        record(input, ear);
        EXPECT_TRUE(ear.waitForFrames(rate));
        stopRecording(input);

        const auto heard = ear.heard();
        EXPECT_TRUE(std::all_of(heard.bufferLengths.begin(), heard.bufferLengths.end() - 1,
                                [](std::size_t frames) { return frames == 4096; }));
        EXPECT_LE(heard.bufferLengths.back(), 4096U);
        EXPECT_NE(heard.thread, std::this_thread::get_id());
        return Voice::gapsIn(heard.samples);
    };
    EXPECT_EQ(leastOf(5, gapsOfARecording), 0);
}

TEST_P(PulseAudioInputTest, release_losesNothingThatWasSaidBefore) {
    startWithMicrophone();
    const auto voice = speak();
    voice->count();
    PulseAudioInput input(connection());
    for (int recording = 0; recording < 10; ++recording) {
        Ear ear;
        record(input, ear);
        ASSERT_TRUE(ear.waitForFrames(4096));
        const auto said = voice->framesSaid();
        stopRecording(input);
        const auto last = Voice::frameOf(ear.heard().samples.back(), said);
        EXPECT_GE(last, said - rate / 100) << "the server's own clock is not finer than 10 ms";
    }
}

TEST_P(PulseAudioInputTest, firstWord_isHeardFromTheMomentOfTheStart) {
    startWithMicrophone();
    const auto voice = speak();
    voice->count();
    PulseAudioInput input(connection());
    std::vector<std::int64_t> lost;
    for (int recording = 0; recording < 9; ++recording) {
        Ear ear;
        const auto said = voice->framesSaid();
        record(input, ear);
        ASSERT_TRUE(ear.waitForFrames(rate / 4));
        stopRecording(input);
        lost.push_back(Voice::frameOf(Voice::firstOf(ear.heard().samples), said) - said);
    }
    // How quick it is, the benchmark tells. A busy machine takes its time now and then; a first sound that is
    // lost by a mistake of ours, as by opening the device twice, would be missing each time.
    std::sort(lost.begin(), lost.end());
    EXPECT_LT(lost[2], rate * 120 / 1000) << "frames";
}

TEST_P(PulseAudioInputTest, stereoMicrophone_givesBothChannelsAtItsOwnRate) {
    startWithMicrophone(48000, 2);
    const auto voice = speak(48000, 2);
    voice->count();
    PulseAudioInput input(connection());
    EXPECT_EQ(input.inputFormat().sampleRate, 48000);
    EXPECT_EQ(input.inputFormat().channels, 2);
    const auto gapsOfARecording = [&] {
        Ear ear;
        record(input, ear);
        EXPECT_TRUE(ear.waitForFrames(rate / 2));
        stopRecording(input);
        EXPECT_EQ(ear.heard().format, input.inputFormat());
        return Voice::gapsIn(ear.heard().samples);
    };
    EXPECT_EQ(leastOf(5, gapsOfARecording), 0);
}

TEST_P(PulseAudioInputTest, microphoneAtAnotherRate_isTakenAsItIs) {
    startWithMicrophone(44100, 1);
    const auto voice = speak(44100);
    PulseAudioInput input(connection());
    const auto format = input.inputFormat();
    if (GetParam() == SoundServer::Kind::PulseAudio) { // the other one resamples all to a rate of its own
        EXPECT_EQ(format.sampleRate, 44100);
    }
    Ear ear;
    record(input, ear);
    voice->say(tone(440, 2.0, 0.5, 44100));
    ASSERT_TRUE(ear.waitUntil([&](const Ear::Heard& heard) {
        return spokenPart(heard.samples).size() > static_cast<std::size_t>(format.sampleRate);
    }));
    input.removeTap();

    EXPECT_NEAR(frequencyOf(spokenPart(ear.heard().samples), format.sampleRate), 440, 1);
}

TEST_P(PulseAudioInputTest, tapOfAnotherFormat_getsItConverted) {
    startWithMicrophone();
    const auto voice = speak();
    PulseAudioInput input(connection());
    const AudioFormat telephone{8000, 1, SampleType::Int16};
    Ear ear;
    input.installTap(1024, telephone, ear.tap());
    input.start();
    voice->say(tone(440, 2.0, 0.5, rate));
    ASSERT_TRUE(
        ear.waitUntil([](const Ear::Heard& heard) { return spokenPart(heard.samples).size() > 8000; }));
    input.removeTap();

    EXPECT_EQ(ear.heard().format, telephone);
    EXPECT_NEAR(frequencyOf(spokenPart(ear.heard().samples), 8000), 440, 1);
}

TEST_P(PulseAudioInputTest, defaultSourceChangedBetweenRecordings_isHonoured) {
    startWithMicrophone();
    server.addMicrophone(QStringLiteral("headset"));
    Voice headset(server.address(), server.feedOf(QStringLiteral("headset")), rate);
    headset.count();
    PulseAudioInput input(connection());
    Ear ear;
    record(input, ear);
    ASSERT_TRUE(ear.waitUntil([](const Ear::Heard& heard) { return !isSilent(heard.samples); }));
    stopRecording(input);

    server.makeDefaultSource(QStringLiteral("microphone"));
    Ear second;
    record(input, second);
    ASSERT_TRUE(second.waitForFrames(rate / 4));
    input.removeTap();
    EXPECT_TRUE(isSilent(second.heard().samples));
}

TEST_P(PulseAudioInputTest, twoInputs_recordAtTheSameTime) {
    startWithMicrophone();
    const auto voice = speak();
    voice->count();
    PulseAudioInput first(connection());
    PulseAudioInput second(connection());
    const auto gapsOfBoth = [&] {
        Ear firstEar;
        Ear secondEar;
        record(first, firstEar);
        record(second, secondEar);
        EXPECT_TRUE(firstEar.waitForFrames(8192));
        EXPECT_TRUE(secondEar.waitForFrames(8192));
        stopRecording(first);
        const auto heard = secondEar.heard().samples.size();
        EXPECT_TRUE(secondEar.waitForFrames(heard + 8192));
        stopRecording(second);
        return Voice::gapsIn(firstEar.heard().samples) + Voice::gapsIn(secondEar.heard().samples);
    };
    EXPECT_EQ(leastOf(5, gapsOfBoth), 0);
}

TEST_P(PulseAudioInputTest, microphoneAtRest_isNotOpened) {
    startWithMicrophone();
    PulseAudioInput input(connection());
    Ear ear;
    const auto recorders = [this] {
        return server.control({QStringLiteral("list"), QStringLiteral("source-outputs")})
            .count(QStringLiteral("Dictation"));
    };
    EXPECT_EQ(recorders(), 0);
    record(input, ear);
    EXPECT_GT(recorders(), 0);
    stopRecording(input);
    while (recorders() > 0) // told in order, but to another client
        ;
}

TEST_P(PulseAudioInputTest, connectionAtRest_isNotWokenUp) {
    startWithMicrophone();
    PulseAudioInput input(connection());
    recordFrames(input, 4096);

    // The server has a word to say now and then; a timer of ours would show in each of these seconds.
    std::vector<long> wakeUps;
    do {
        const auto before = wakeUpsOfAudioThread();
        std::this_thread::sleep_for(1s);
        wakeUps.push_back(wakeUpsOfAudioThread() - before);
    } while (wakeUps.back() > 0 && wakeUps.size() < 8);
    EXPECT_EQ(wakeUps.back(), 0);
}

TEST_P(PulseAudioInputTest, hundredRecordings_leakNoThreadDescriptorOrMemory) {
    startWithMicrophone();
    PulseAudioInput input(connection());
    const auto recordOnce = [&] {
        Ear ear;
        record(input, ear, 64);
        stopRecording(input);
    };
    for (int warmUp = 0; warmUp < 10; ++warmUp)
        recordOnce();
    const auto descriptors = entriesOf("/proc/self/fd");
    const auto threads = entriesOf("/proc/self/task");
    const auto memory = residentKilobytes();
    for (int recording = 0; recording < 100; ++recording)
        recordOnce();
    EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
    EXPECT_EQ(entriesOf("/proc/self/task"), threads);
    if (!sanitized) {
        EXPECT_LT(residentKilobytes() - memory, 2000);
    }
}

TEST_P(PulseAudioInputTest, fromTheFirstRecordingOn_nobodyLooksIntoTheMemory) {
    startWithMicrophone();
    const int before = ::prctl(PR_GET_DUMPABLE);
    ::prctl(PR_SET_DUMPABLE, 1);
    PulseAudioInput input(connection());
    EXPECT_EQ(::prctl(PR_GET_DUMPABLE), 1) << "the desktop may still ask what we are";
    Ear ear;
    record(input, ear, 64);
    EXPECT_EQ(::prctl(PR_GET_DUMPABLE), 0);
    input.removeTap();
    ::prctl(PR_SET_DUMPABLE, before);
}

INSTANTIATE_TEST_SUITE_P(, PulseAudioInputTest,
                         testing::Values(SoundServer::Kind::PulseAudio, SoundServer::Kind::PipeWire),
                         nameOfKind);
