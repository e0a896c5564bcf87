// SPDX-License-Identifier: MIT
#include "shell/MenuBarController.h"

#include "concurrency/MainActor.h"
#include "persistence/AppSettings.h"

namespace talvera {

namespace {

bool isTranslating(const QString& targetLanguageCode) {
    return targetLanguageCode != QStringLiteral("off");
}

} // namespace

MenuBarController::MenuBarController(MainActor& actor, AppSettings& settings)
    : translateIndicator(isTranslating(settings.targetLanguageCode.get()))
    , aiCleanupIndicator(settings.aiCleanupEnabled.get())
    , m_actor(actor) {
    m_cancellables.push_back(settings.targetLanguageCode.subscribe(
        actor, [this](const QString& code) { translateIndicator.set(isTranslating(code)); }));
    m_cancellables.push_back(settings.aiCleanupEnabled.subscribe(
        actor, [this](bool enabled) { aiCleanupIndicator.set(enabled); }));
}

void MenuBarController::showError(const QString& message, Duration duration) {
    state.set(State::Error);
    lastErrorMessage.set(message);
    m_actor.start([this, &actor = m_actor, owner = m_lifetime.token(), duration]() -> Task<void> {
        co_await actor.sleep(duration);
        if (!owner.isAlive() || state.get() != State::Error)
            co_return;
        state.set(State::Idle);
        lastErrorMessage.set(std::nullopt);
    });
}

QString MenuBarController::statusIconName() const {
    switch (state.get()) {
    case State::Recording:
        return QStringLiteral("mic.fill");
    case State::Transcribing:
        return QStringLiteral("waveform");
    case State::Error:
        return QStringLiteral("exclamationmark.triangle");
    case State::Idle:
        break;
    }
    if (aiCleanupIndicator.get())
        return QStringLiteral("wand.and.sparkles");
    return translateIndicator.get() ? QStringLiteral("translate")
                                    : QStringLiteral("waveform.badge.microphone");
}

} // namespace talvera
