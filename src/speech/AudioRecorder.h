// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "platform/sound/AudioConverter.h"
#include "platform/sound/AudioEngine.h"
#include "platform/system/FileSystem.h"
#include "text/wiping.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace talvera {

/// Records the microphone, and leaves a WAV file that the recognition tool can read. Conversion runs live, so
/// that little is left to do at the stop. Once the file is written, nothing of the recording stays in memory.
/// Main thread only; what it is given must outlive it.
class AudioRecorder {
public:
    /// Hears the input level, from 0 to 1.
    using LevelObserver = std::function<void(float)>;

    AudioRecorder(AudioEngine& engine, AudioConverterFactory& converters, FileSystem& files,
                  MainActor& mainActor);
    ~AudioRecorder();
    AudioRecorder(const AudioRecorder&) = delete;
    AudioRecorder& operator=(const AudioRecorder&) = delete;

    /// Begins a recording; does nothing during one. Throws the engine's PlatformError.
    void start();

    /// Ends the recording, trims the silence at its end and writes it to `path`. Answers the seconds written;
    /// without a recording 0, and nothing is written. When the file can't be written, throws PlatformError.
    double stop(const QString& path);

    bool isRecording() const { return m_isRecording; }

    /// How many samples of the present recording are certain to be in its file, from the first one on,
    /// whatever is still said: silence behind them may be trimmed. At 16000 a second.
    std::size_t settledSamples() const;
    /// A copy of samples that are settled.
    WipedVector<std::int16_t> settledSamples(std::size_t first, std::size_t count) const;

    /// Called on the main thread, once per captured buffer, from the next buffer on.
    void setOnLevel(LevelObserver observer);

    /// Called on the main thread when the microphone goes away during a recording: what comes after that
    /// isn't heard. To be set once.
    void setOnLost(std::function<void()> lost);

private:
    void append(const AudioBuffer& buffer);
    void forgetSamples();
    void postLevel(const AudioBuffer& buffer);

    static constexpr double targetSampleRate = 16000.0;
    static constexpr std::size_t tapFrames = 4096;

    AudioEngine& m_engine;
    AudioConverterFactory& m_converters;
    FileSystem& m_files;
    MainActor& m_mainActor;

    // Belongs to the tap's thread while a tap is installed, and to the main thread otherwise; the engine's
    // installTap() and removeTap() order the one before the other.
    std::unique_ptr<AudioConverter> m_converter;

    mutable std::mutex m_samplesMutex; // what has been recorded is looked at while more comes
    WipedVector<std::int16_t> m_samples;
    std::size_t m_settled = 0;

    bool m_isRecording = false;

    std::mutex m_onLevelMutex; // the owner may change the observer during a recording
    LevelObserver m_onLevel;
    std::function<void()> m_onLost; // main thread
    Lifetime m_lifetime;
};

} // namespace talvera
