// SPDX-License-Identifier: MIT
#include "speech/AudioRecorder.h"

#include "speech/SoundMeasures.h"
#include "speech/WavWriter.h"

namespace talvera {

namespace {

/// Room in the output buffer beyond what the rates ask for: a converter's filter may give out more at once.
constexpr std::size_t spareFrames = 1024;

} // namespace

AudioRecorder::AudioRecorder(AudioEngine& engine, AudioConverterFactory& converters, FileSystem& files,
                             MainActor& mainActor)
    : m_engine(engine)
    , m_converters(converters)
    , m_files(files)
    , m_mainActor(mainActor) {}

AudioRecorder::~AudioRecorder() {
    m_engine.removeTap();
    m_engine.setOnLost(nullptr);
    if (m_isRecording)
        m_engine.stop();
}

void AudioRecorder::start() {
    if (m_isRecording)
        return;
    forgetSamples(); // what could not be written last time
    const auto format = m_engine.inputFormat();
    m_converter = m_converters.make(format, {targetSampleRate, 1, SampleType::Int16});
    m_engine.installTap(tapFrames, format, [this](const AudioBuffer& buffer) {
        append(buffer);
        postLevel(buffer);
    });
    m_engine.start();
    m_isRecording = true;
}

double AudioRecorder::stop(const QString& path) {
    if (!m_isRecording)
        return 0.0;
    m_engine.removeTap();
    m_engine.stop();
    m_isRecording = false;
    const auto kept = trimTrailingSilence(m_samples, targetSampleRate);
    writeWAV(m_files, kept, static_cast<int>(targetSampleRate), path);
    const auto seconds = static_cast<double>(kept.size()) / targetSampleRate;
    forgetSamples();
    return seconds;
}

/// Their memory stays for the next recording.
void AudioRecorder::forgetSamples() {
    const std::scoped_lock lock(m_samplesMutex);
    wipe(m_samples);
    m_settled = 0;
}

std::size_t AudioRecorder::settledSamples() const {
    const std::scoped_lock lock(m_samplesMutex);
    return m_settled;
}

WipedVector<std::int16_t> AudioRecorder::settledSamples(std::size_t first, std::size_t count) const {
    const std::scoped_lock lock(m_samplesMutex);
    const std::span settled(m_samples.data(), m_settled);
    const auto wanted = settled.subspan(first, count);
    return {wanted.begin(), wanted.end()};
}

void AudioRecorder::setOnLevel(LevelObserver observer) {
    const std::scoped_lock lock(m_onLevelMutex);
    m_onLevel = std::move(observer);
}

void AudioRecorder::setOnLost(std::function<void()> lost) {
    m_onLost = std::move(lost);
    const std::function<void()> tell = m_lifetime.ifAlive([this] {
        if (m_isRecording)
            m_onLost();
    });
    m_engine.setOnLost([&actor = m_mainActor, tell] { actor.post(tell); });
}

void AudioRecorder::append(const AudioBuffer& buffer) {
    if (!m_converter || buffer.format.sampleRate <= 0)
        return;
    const auto ratio = targetSampleRate / buffer.format.sampleRate;
    const auto capacity =
        static_cast<std::size_t>(ratio * static_cast<double>(buffer.frameLength)) + spareFrames;
    if (auto converted = m_converter->convert(buffer, capacity)) {
        const std::scoped_lock lock(m_samplesMutex);
        if (const auto loud = loudLength(*converted); loud > 0)
            m_settled = m_samples.size() + loud;
        m_samples.insert(m_samples.end(), converted->begin(), converted->end());
        wipe(*converted);
    }
}

void AudioRecorder::postLevel(const AudioBuffer& buffer) {
    LevelObserver observer;
    {
        const std::scoped_lock lock(m_onLevelMutex);
        observer = m_onLevel;
    }
    if (!observer)
        return;
    if (const auto level = inputLevel(buffer))
        m_mainActor.post([observer = std::move(observer), level = *level] { observer(level); });
}

} // namespace talvera
