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

/// What was begun ahead for a recording serves its first pass alone, however that ends.
class EarlyEnd {
public:
    explicit EarlyEnd(EarlyRecognition* early)
        : m_early(early) {}
    EarlyEnd(const EarlyEnd&) = delete;
    EarlyEnd& operator=(const EarlyEnd&) = delete;
    ~EarlyEnd() {
        if (m_early != nullptr)
            m_early->end();
    }

private:
    EarlyRecognition* m_early;
};

} // namespace

Task<QString> ChunkedTranscription::transcribeChunked(const WhisperRunner& runner, QString wav,
                                                      WhisperMode mode, QString language, double chunkSeconds,
                                                      double overlapSeconds, double minDuration) {
    const AudioChunker::Lengths lengths{chunkSeconds, overlapSeconds, minDuration};
    const EarlyEnd early(m_early);
    auto chunks = split(wav, mode, lengths);
    if (m_early != nullptr) {
        const EarlyRecognition::Pass pass{wav, mode, language};
        co_await m_early->meet(pass, chunks.has_value());
    }
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
    const auto prepared = m_early != nullptr ? m_early->takePrepared() : nullptr;
    std::function<QString()> work = [&runner, wav, mode, language, prompt, prepared] {
        return runner.transcribe(wav, mode, language, prompt, prepared.get());
    };
    co_return co_await onBackground(m_background, work);
}

/// And the seconds that its run has taken, which may have been ahead.
Task<EarlyRecognition::ChunkText> ChunkedTranscription::textOfChunk(const WhisperRunner& runner,
                                                                    const AudioChunker::Chunk& chunk,
                                                                    std::size_t index, WhisperMode mode,
                                                                    QString language,
                                                                    std::optional<QString> prompt) {
    if (m_early != nullptr) {
        const auto early = co_await m_early->textOf(index, chunk.url, prompt);
        if (early)
            co_return *early;
    }
    const auto started = m_mainActor.now();
    auto text = co_await run(runner, chunk.url, mode, language, prompt);
    co_return EarlyRecognition::ChunkText{std::move(text), toSeconds(m_mainActor.now() - started)};
}

Task<QString> ChunkedTranscription::transcribeChunks(const WhisperRunner& runner, Chunks chunks,
                                                     WhisperMode mode, QString language) {
    const ChunkFiles chunkFiles(m_files, chunks);
    const auto word = logWord(mode).toUtf8();
    const auto stageStarted = m_mainActor.now();
    QStringList texts;
    for (const auto& chunk : chunks) {
        const auto prompt = texts.isEmpty() ? std::nullopt : tailPrompt(texts.last());
        const auto index = static_cast<std::size_t>(texts.size());
        const auto [text, decoded] = co_await textOfChunk(runner, chunk, index, mode, language, prompt);
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
