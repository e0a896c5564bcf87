// SPDX-License-Identifier: MIT
#include "core/Warmup.h"

#include "concurrency/MainActor.h"
#include "concurrency/onBackground.h"
#include "language/AICleanup.h"
#include "language/SnapshotStream.h"
#include "models/ModelStore.h"
#include "platform/language/LanguageModel.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/PlatformError.h"
#include "speech/WavWriter.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace talvera {

namespace {

constexpr int sampleRate = 16000;
constexpr std::size_t silentSamples = 5333; ///< a third of a second: the run costs the model's load alone

} // namespace

Warmup::Warmup(Parts parts)
    : m_parts(std::move(parts)) {}

Warmup::~Warmup() = default;

void Warmup::primeAll(const WhisperRunner& runner) {
    m_parts.console.print(QStringLiteral("[warmup] primeAll: scheduling whisper + AI tasks"));
    const bool isWhisperDue = mayKickWhisper();
    m_parts.actor.start([this, owner = m_lifetime.token(), isWhisperDue, runner]() -> Task<void> {
        if (owner.isAlive() && isWhisperDue)
            co_await warmUpWhisper(runner);
        if (owner.isAlive())
            co_await primeAppleIntelligence();
    });
}

void Warmup::kickWhisperOnce(const WhisperRunner& runner) {
    if (!mayKickWhisper())
        return;
    m_parts.actor.start([this, owner = m_lifetime.token(), runner]() -> Task<void> {
        if (owner.isAlive())
            co_await warmUpWhisper(runner);
    });
}

/// Once and never again, and only with a model.
bool Warmup::mayKickWhisper() {
    if (m_kickedWhisper) {
        m_parts.console.print(QStringLiteral("[warmup] kickWhisperOnce: already kicked, skip"));
        return false;
    }
    if (!m_parts.models.isReady()) {
        m_parts.console.print(
            QStringLiteral("[warmup] kickWhisperOnce: model not ready, defer (downloader will re-kick)"));
        return false;
    }
    m_kickedWhisper = true;
    return true;
}

Task<void> Warmup::warmUpWhisper(WhisperRunner runner) {
    const auto owner = m_lifetime.token();
    const bool succeeded = co_await primeWhisper(runner);
    if (succeeded && owner.isAlive())
        didWhisperWarmup.set(true);
}

Task<bool> Warmup::primeWhisper(WhisperRunner runner) {
    auto& [actor, background, files, directories, makeFreshName, models, languageModel, console] = m_parts;
    const bool isReady = models.isReady();
    console.print(QStringLiteral("[warmup] primeWhisper: enter (ModelStore.isReady=%1)")
                      .arg(isReady ? QStringLiteral("true") : QStringLiteral("false")));
    if (!isReady)
        co_return false;
    const auto wav = QStringLiteral("%1/talvera-warmup-%2.wav").arg(directories.temporary, makeFreshName());
    const auto started = actor.now();
    std::optional<QString> failure;
    try {
        writeWAV(files, std::vector<std::int16_t>(silentSamples), sampleRate, wav);
        std::function<QString()> run = [runner = runner.atLowPriority(), wav] {
            return runner.transcribe(wav, WhisperMode::Transcribe, QStringLiteral("en"));
        };
        co_await onBackground(background, std::move(run));
    } catch (const std::exception& error) {
        failure = QString::fromUtf8(error.what());
    }
    if (failure)
        console.print(QStringLiteral("[warmup] whisper failed: ") + *failure);
    else
        console.print(QString::asprintf("[warmup] whisper ready in %.2fs", toSeconds(actor.now() - started)));
    removeIfPossible(files, wav);
    co_return !failure;
}

/// A request of its own, and its answer unread: what counts is that the model is loaded then.
Task<void> Warmup::primeAppleIntelligence() {
    auto& actor = m_parts.actor; // both may outlive this object
    auto& console = m_parts.console;
    const bool isAvailable = AICleanup::isAvailable(m_parts.languageModel);
    console.print(QStringLiteral("[warmup] primeAppleIntelligence: enter (AICleanup.isAvailable=%1)")
                      .arg(isAvailable ? QStringLiteral("true") : QStringLiteral("false")));
    if (!isAvailable)
        co_return;
    const auto started = actor.now();
    auto session = m_parts.languageModel.makeSession(QStringLiteral("Reply with 'ok'."),
                                                     LanguageModel::Guardrails::Default);
    SnapshotStream snapshots(actor, std::move(session), QStringLiteral("ok"));
    std::optional<QString> failure;
    try {
        while (co_await snapshots.next()) {
        }
    } catch (const std::exception& error) {
        failure = QString::fromUtf8(error.what());
    }
    if (failure)
        console.print(QStringLiteral("[warmup] Apple Intelligence failed: ") + *failure);
    else
        console.print(QString::asprintf("[warmup] Apple Intelligence ready in %.2fs",
                                        toSeconds(actor.now() - started)));
}

} // namespace talvera
