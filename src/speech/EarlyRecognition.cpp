// SPDX-License-Identifier: MIT
#include "speech/EarlyRecognition.h"

#include "concurrency/AsyncStream.h"
#include "concurrency/MainActor.h"
#include "concurrency/onBackground.h"
#include "platform/system/FileSystem.h"
#include "speech/AudioRecorder.h"
#include "speech/OverlapMerge.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"
#include "speech/WhisperRunner.h"
#include "text/wiping.h"

#include <QCryptographicHash>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace talvera {

namespace {

constexpr int sampleRate = 16000;

std::size_t samplesIn(double seconds) {
    return static_cast<std::size_t>(seconds * sampleRate);
}

double secondsOf(std::size_t samples) {
    return static_cast<double>(samples) / sampleRate;
}

QByteArray digestOf(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

/// Empty for a file that can't be read.
QByteArray digestOf(FileSystem& files, const QString& path) {
    try {
        auto bytes = files.read(path);
        const WipedAtEnd wiped(bytes);
        return digestOf(bytes);
    } catch (const PlatformError&) {
        return {};
    }
}

/// A chunk that was recognised ahead.
struct EarlyChunk {
    QByteArray digest; ///< of its WAV file
    std::optional<QString> prompt;
    EarlyRecognition::ChunkText text;
};

} // namespace

/// What is done ahead for one recording.
struct EarlyRecognition::Session {
    Session(MainActor& actor, const Pass& firstPass, const std::optional<FileStamp>& modelNow)
        : pass(firstPass)
        , model(modelNow)
        , chunkEnds(actor) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() {
        for (auto& chunk : chunks) {
            wipe(chunk.text.text);
            if (chunk.prompt)
                wipe(*chunk.prompt);
        }
    }

    /// What comes next: the whole recording, or the chunk behind those that are done.
    QString nextWav() const { return inChunks ? AudioChunker::pathOf(pass.wav, chunks.size()) : pass.wav; }
    std::optional<QString> nextPrompt() const {
        return chunks.empty() ? std::nullopt : tailPrompt(chunks.back().text.text);
    }

    const Pass pass;
    const std::optional<FileStamp> model; ///< the file, as it was in the beginning
    bool isOver = false;                  ///< nothing new begins: it was released, or is not wanted
    bool inChunks = false;                ///< the recording is long
    std::size_t first = 0;                ///< of the samples of what comes next

    std::shared_ptr<PreparedRun> prepared;
    QString preparedWav; ///< that it is for
    bool isForShortClip = false;

    std::vector<EarlyChunk> chunks; ///< in order, from the first one on
    bool isBusy = false;            ///< the next one is being recognised, by the prepared run
    bool isAwaited = false;         ///< its end is
    AsyncStream<bool> chunkEnds;    ///< tells it then
};

EarlyRecognition::EarlyRecognition(Parts parts, const AudioChunker::Lengths& lengths)
    : m_parts(parts)
    , m_lengths(lengths) {}

EarlyRecognition::~EarlyRecognition() {
    end();
}

void EarlyRecognition::begin(const Pass& pass) {
    end();
    const auto& model = m_parts.runner.modelURL();
    m_parts.files.readAhead(model);
    m_session = std::make_shared<Session>(m_parts.actor, pass, m_parts.files.stamp(model));
    prepare(*m_session, 0);
}

void EarlyRecognition::follow() {
    if (m_session)
        goOn(m_session);
}

void EarlyRecognition::end() {
    if (const auto session = std::exchange(m_session, nullptr))
        end(*session);
}

void EarlyRecognition::end(Session& session) {
    session.isOver = true;
    if (session.prepared)
        session.prepared->end();
    session.prepared.reset();
}

Task<void> EarlyRecognition::giveUp() {
    const auto session = m_session;
    end();
    if (session)
        co_await untilIdle(session);
}

Task<void> EarlyRecognition::untilIdle(SessionPtr session) {
    while (session->isBusy) {
        session->isAwaited = true;
        co_await session->chunkEnds.next();
    }
}

Task<void> EarlyRecognition::meet(Pass pass, bool inChunks) {
    if (!m_session)
        co_return;
    m_session->isOver = true;
    const bool fits = m_session->pass == pass && (inChunks || !m_session->inChunks) &&
                      m_session->model == m_parts.files.stamp(m_parts.runner.modelURL());
    if (!fits)
        co_await giveUp();
}

Task<std::optional<EarlyRecognition::ChunkText>> EarlyRecognition::textOf(std::size_t index, QString chunk,
                                                                          std::optional<QString> prompt) {
    const auto session = m_session;
    if (!session)
        co_return std::nullopt;
    if (index == session->chunks.size())
        co_await untilIdle(session);
    if (index >= session->chunks.size())
        co_return std::nullopt;
    const auto& early = session->chunks[index];
    if (early.prompt == prompt && early.digest == digestOf(m_parts.files, chunk))
        co_return early.text;
    co_await giveUp();
    co_return std::nullopt;
}

std::shared_ptr<PreparedRun> EarlyRecognition::takePrepared() {
    return m_session && !m_session->isBusy ? std::exchange(m_session->prepared, nullptr) : nullptr;
}

/// Prepares the run of what comes next, which will last for so many seconds, in place of the one that there
/// is.
void EarlyRecognition::prepare(Session& session, double seconds) {
    session.prepared.reset(); // before there is another one
    session.preparedWav = session.nextWav();
    session.isForShortClip = isShortClip(seconds);
    session.prepared = m_parts.runner.prepare(session.preparedWav, seconds, session.pass.mode,
                                              session.pass.language, session.nextPrompt());
}

std::size_t EarlyRecognition::settledOfNext(const Session& session) const {
    const auto settled = m_parts.recorder.settledSamples();
    return settled - std::min(session.first, settled);
}

bool EarlyRecognition::isPreparedFor(const Session& session, double seconds) {
    return session.preparedWav == session.nextWav() && session.isForShortClip == isShortClip(seconds);
}

/// Where nothing can be prepared, nothing is done ahead at all.
void EarlyRecognition::goOn(const SessionPtr& session) {
    // The last level is told when the recording has ended, and the recorder has forgotten it.
    if (session->isOver || session->isBusy || !session->prepared || !m_parts.recorder.isRecording())
        return;
    const auto next = settledOfNext(*session);
    const auto seconds = secondsOf(next);
    session->inChunks |= seconds > m_lengths.minDuration;
    const bool isChunkSettled = session->inChunks && next >= samplesIn(m_lengths.chunkSeconds);
    const auto wanted = isChunkSettled ? m_lengths.chunkSeconds : seconds;
    if (!isPreparedFor(*session, wanted))
        prepare(*session, wanted);
    if (isChunkSettled && session->prepared)
        recogniseChunk(session);
}

Task<void> EarlyRecognition::recogniseChunk(SessionPtr session) {
    session->isBusy = true;
    const auto owner = m_lifetime.token();
    const auto& actor = m_parts.actor; // both outlive this object
    auto& files = m_parts.files;
    const auto wav = session->nextWav();
    EarlyChunk chunk{{}, session->nextPrompt(), {}};
    const auto samples = std::make_shared<const WipedVector<std::int16_t>>(
        m_parts.recorder.settledSamples(session->first, samplesIn(m_lengths.chunkSeconds)));
    std::function<QString()> work = [&runner = m_parts.runner, session, prepared = session->prepared, samples,
                                     wav, &chunk] {
        auto recording = wavBytes(*samples, sampleRate);
        const WipedAtEnd wiped(recording);
        chunk.digest = digestOf(recording);
        const auto& pass = session->pass;
        const auto text =
            runner.transcribeAhead(recording, wav, pass.mode, pass.language, chunk.prompt, *prepared);
        if (!text)
            throw std::runtime_error("the prepared run has come to nothing");
        return *text;
    };
    const auto started = actor.now();
    bool isDone = false;
    try {
        chunk.text.text = co_await onBackground(m_parts.background, work);
        isDone = true;
    } catch (const std::exception&) {
        removeIfPossible(files, outputBase(wav) + QStringLiteral(".txt"));
        session->isOver = true; // the pass will see by itself what is wrong
    }
    work = nullptr;
    chunk.text.seconds = toSeconds(actor.now() - started);
    session->isBusy = false;
    session->prepared.reset();
    if (isDone) {
        session->chunks.push_back(std::move(chunk));
        session->first += samplesIn(m_lengths.chunkSeconds) - samplesIn(m_lengths.overlapSeconds);
    }
    if (std::exchange(session->isAwaited, false))
        session->chunkEnds.push(true);
    else if (isDone && owner.isAlive())
        prepareNext(session);
}

void EarlyRecognition::prepareNext(const SessionPtr& session) {
    if (session->isOver || !m_parts.recorder.isRecording())
        return;
    prepare(*session, secondsOf(settledOfNext(*session)));
    goOn(session);
}

} // namespace talvera
