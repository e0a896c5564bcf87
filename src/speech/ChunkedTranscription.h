// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/BackgroundPool.h"
#include "concurrency/MainActor.h"
#include "concurrency/Task.h"
#include "platform/sound/AudioFile.h"
#include "platform/system/Console.h"
#include "platform/system/FileSystem.h"
#include "speech/AudioChunker.h"
#include "speech/EarlyRecognition.h"
#include "speech/WhisperRunner.h"

#include <QString>

#include <optional>
#include <vector>

namespace talvera {

/// The one way from a recording of any length to its text: a short recording goes to the tool whole, a long
/// one in chunks, one after another, whose texts are joined. Main thread only, and it gives the thread up
/// while the tool runs. It must outlive its runs.
class ChunkedTranscription {
public:
    /// `early`, if given, is what has been done ahead for recordings.
    ChunkedTranscription(MainActor& mainActor, BackgroundPool& background, FileSystem& files,
                         AudioFileReader& reader, Console& console, EarlyRecognition* early = nullptr)
        : m_mainActor(mainActor)
        , m_background(background)
        , m_files(files)
        , m_reader(reader)
        , m_console(console)
        , m_early(early) {}

    /// The transcript of `wav`, which stays where it is. `runner` must outlive the run. The three lengths are
    /// in seconds. Throws what the runner throws; no chunk files are left then either.
    Task<QString> transcribeChunked(const WhisperRunner& runner, QString wav, WhisperMode mode,
                                    QString language, double chunkSeconds, double overlapSeconds,
                                    double minDuration);

private:
    using Chunks = std::vector<AudioChunker::Chunk>;

    Task<EarlyRecognition::ChunkText> textOfChunk(const WhisperRunner& runner,
                                                  const AudioChunker::Chunk& chunk, std::size_t index,
                                                  WhisperMode mode, QString language,
                                                  std::optional<QString> prompt);
    std::optional<Chunks> split(const QString& wav, WhisperMode mode, const AudioChunker::Lengths& lengths);
    Task<QString> run(const WhisperRunner& runner, QString wav, WhisperMode mode, QString language,
                      std::optional<QString> prompt);
    Task<QString> transcribeChunks(const WhisperRunner& runner, Chunks chunks, WhisperMode mode,
                                   QString language);

    MainActor& m_mainActor;
    BackgroundPool& m_background;
    FileSystem& m_files;
    AudioFileReader& m_reader;
    Console& m_console;
    EarlyRecognition* m_early; ///< may be null
};

} // namespace talvera
