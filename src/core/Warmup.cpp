// SPDX-License-Identifier: MIT
#include "core/Warmup.h"

#include "concurrency/MainActor.h"
#include "concurrency/onBackground.h"
#include "models/ModelStore.h"
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

void Warmup::primeAll(const WhisperRunner&) {
    m_parts.console.print(QStringLiteral("[warmup] primeAll: scheduling whisper + AI tasks"));
}

void Warmup::kickWhisperOnce(const WhisperRunner& runner) {
    if (m_kickedWhisper) {
        m_parts.console.print(QStringLiteral("[warmup] kickWhisperOnce: already kicked, skip"));
        return;
    }
    if (!m_parts.models.isReady()) {
        m_parts.console.print(
            QStringLiteral("[warmup] kickWhisperOnce: model not ready, defer (downloader will re-kick)"));
        return;
    }
    m_kickedWhisper = true;
    m_parts.actor.start([this, owner = m_lifetime.token(), runner]() -> Task<void> {
        if (!owner.isAlive())
            co_return;
        const bool succeeded = co_await primeWhisper(runner);
        if (succeeded && owner.isAlive())
            didWhisperWarmup.set(true);
    });
}

Task<bool> Warmup::primeWhisper(WhisperRunner runner) {
    auto& [actor, background, files, directories, makeFreshName, models, console] = m_parts;
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
        std::function<QString()> run = [runner = std::move(runner), wav] {
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

} // namespace talvera
