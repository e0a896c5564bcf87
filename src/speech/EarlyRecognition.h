// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Task.h"
#include "speech/AudioChunker.h"
#include "speech/WhisperMode.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>

namespace talvera {

class AudioRecorder;
class BackgroundPool;
class FileSystem;
class MainActor;
class PreparedRun;
class WhisperRunner;

/// What of a recognition can be done while the user still speaks, so that less is left to wait for: a run of
/// the recogniser is prepared, and of a long recording the chunks that nothing can change any more are
/// recognised, one after another. None of it shows: the pass after the release takes what fits, and gives the
/// text that it would have given without. There is one prepared run at most, and none but while something is
/// recorded or recognised. Main thread only; what it is given must outlive it and the background's work.
class EarlyRecognition {
public:
    /// The first pass over a recording, as far as that is known before its release.
    struct Pass {
        QString wav; ///< where the recording will be
        WhisperMode mode = WhisperMode::Transcribe;
        QString language;

        bool operator==(const Pass&) const = default;
    };

    /// The text of a chunk that was recognised ahead, and how long that took.
    struct ChunkText {
        QString text;
        double seconds = 0;
    };

    struct Parts {
        MainActor& actor;
        BackgroundPool& background;
        FileSystem& files;
        const AudioRecorder& recorder;
        const WhisperRunner& runner;
    };

    explicit EarlyRecognition(Parts parts, const AudioChunker::Lengths& lengths = AudioChunker::usualLengths);
    ~EarlyRecognition();
    EarlyRecognition(const EarlyRecognition&) = delete;
    EarlyRecognition& operator=(const EarlyRecognition&) = delete;

    /// A recording has begun. What was begun for another one ends.
    void begin(const Pass& pass);

    /// More has been recorded.
    void follow();

    /// Nothing of it is wanted any more: the recording was discarded, or its pass is over.
    void end();

    /// The recording is in its file, and this is the pass over it, whole or in chunks. What was begun for
    /// another pass, or with another model, ends; returns when nothing of it is left.
    Task<void> meet(Pass pass, bool inChunks);

    /// The text of the chunk of this number, whose file is written, if the same sound behind the same prompt
    /// was recognised ahead; waits for it while that is under way.
    Task<std::optional<ChunkText>> textOf(std::size_t index, QString chunk, std::optional<QString> prompt);

    /// As end(), and returns when nothing of it is left.
    Task<void> giveUp();

    /// The prepared run, which is the caller's from now on; null if there is none.
    std::shared_ptr<PreparedRun> takePrepared();

private:
    struct Session;
    using SessionPtr = std::shared_ptr<Session>;

    void prepare(Session& session, double seconds);
    std::size_t settledOfNext(const Session& session) const;
    static bool isPreparedFor(const Session& session, double seconds);
    void goOn(const SessionPtr& session);
    Task<void> recogniseChunk(SessionPtr session);
    void prepareNext(const SessionPtr& session);
    static void end(Session& session);
    static Task<void> untilIdle(SessionPtr session);

    const Parts m_parts;
    const AudioChunker::Lengths m_lengths;
    SessionPtr m_session; ///< of the present recording
    Lifetime m_lifetime;
};

} // namespace talvera
