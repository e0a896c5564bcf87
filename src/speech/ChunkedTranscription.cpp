// SPDX-License-Identifier: MIT
#include "speech/ChunkedTranscription.h"

#include "concurrency/onBackground.h"
#include "speech/OverlapMerge.h"
#include "text/Characters.h"
#include "text/wiping.h"

#include <QStringList>

namespace talvera {

namespace {

/// Deletes the chunk files however the run ends.
class ChunkFiles {
public:
    ChunkFiles(FileSystem& files, const std::vector<AudioChunker::Chunk>& chunks)
        : m_files(files)
        , m_chunks(chunks) {}
    ChunkFiles(const ChunkFiles&) = delete;
    ChunkFiles& operator=(const ChunkFiles&) = delete;
    ~ChunkFiles() { AudioChunker::cleanup(m_files, m_chunks); }

private:
    FileSystem& m_files;
    const std::vector<AudioChunker::Chunk>& m_chunks;
};

} // namespace

Task<QString> ChunkedTranscription::transcribeChunked(const WhisperRunner& runner, QString wav,
                                                      WhisperMode mode, QString language, double chunkSeconds,
                                                      double overlapSeconds, double minDuration) {
    const AudioChunker::Lengths lengths{chunkSeconds, overlapSeconds, minDuration};
    auto chunks = split(wav, mode, lengths);
    if (!chunks) {
        const std::optional<QString> defaultPrompt;
        co_return co_await run(runner, wav, mode, language, defaultPrompt);
    }
    co_return co_await transcribeChunks(runner, std::move(*chunks), mode, language);
}

/// Nothing when the recording goes to the tool whole, also because it could not be split.
std::optional<ChunkedTranscription::Chunks>
ChunkedTranscription::split(const QString& wav, WhisperMode mode, const AudioChunker::Lengths& lengths) {
    try {
        return AudioChunker::split(m_reader, m_files, wav, lengths);
    } catch (const std::exception& error) {
        m_console.print(QStringLiteral("[chunked-%1] split failed: %2 — falling back to single-shot")
                            .arg(logWord(mode), QString::fromUtf8(error.what())));
        return std::nullopt;
    }
}

Task<QString> ChunkedTranscription::run(const WhisperRunner& runner, QString wav, WhisperMode mode,
                                        QString language, std::optional<QString> prompt) {
    std::function<QString()> work = [&runner, wav, mode, language, prompt] {
        return runner.transcribe(wav, mode, language, prompt);
    };
    co_return co_await onBackground(m_background, work);
}

Task<QString> ChunkedTranscription::transcribeChunks(const WhisperRunner& runner, Chunks chunks,
                                                     WhisperMode mode, QString language) {
    const ChunkFiles chunkFiles(m_files, chunks);
    const auto word = logWord(mode).toUtf8();
    const auto stageStarted = m_mainActor.now();
    QStringList texts;
    for (const auto& chunk : chunks) {
        const auto prompt = texts.isEmpty() ? std::nullopt : tailPrompt(texts.last());
        const auto started = m_mainActor.now();
        const auto text = co_await run(runner, chunk.url, mode, language, prompt);
        const auto decoded = toSeconds(m_mainActor.now() - started);
        texts.append(text);
        m_console.print(QString::asprintf("TALVERA_PERF chunk_%s %d/%d audio=%.1fs decode=%.2fs chars=%d",
                                          word.constData(), static_cast<int>(texts.size()),
                                          static_cast<int>(chunks.size()), chunk.durationSeconds, decoded,
                                          static_cast<int>(characterCount(text))));
    }
    const auto merged = mergeAll(texts);
    for (auto& text : texts)
        wipe(text);
    m_console.print(QString::asprintf("TALVERA_PERF chunked_%s_total stage=%.2fs chunks=%d chars=%d",
                                      word.constData(), toSeconds(m_mainActor.now() - stageStarted),
                                      static_cast<int>(chunks.size()),
                                      static_cast<int>(characterCount(merged))));
    co_return merged;
}

} // namespace talvera
