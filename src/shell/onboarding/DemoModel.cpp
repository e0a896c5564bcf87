// SPDX-License-Identifier: MIT
#include "shell/onboarding/DemoModel.h"

#include "persistence/AppSettings.h"
#include "shell/onboarding/OnboardingController.h"
#include "text/Localization.h"

namespace talvera {

using Kind = DemoPhase::Kind;

DemoModel::DemoModel(OnboardingController& controller, AppSettings& settings, KeyboardLayout& layout)
    : m_controller(controller)
    , m_settings(settings)
    , m_layout(layout) {
    const auto tell = [this](void (DemoModel::*signal)()) {
        return [this, signal](const auto&) { Q_EMIT(this->*signal)(); };
    };
    m_cancellables.push_back(m_settings.hotkeyBinding.observe(tell(&DemoModel::hotkeyChanged)));
    m_cancellables.push_back(m_settings.hotkeyTapToToggle.observe(tell(&DemoModel::hotkeyChanged)));
    m_cancellables.push_back(m_controller.micStatus.observe(tell(&DemoModel::canRunChanged)));
    m_cancellables.push_back(m_controller.axTrusted.observe(tell(&DemoModel::canRunChanged)));
    m_cancellables.push_back(m_controller.demoPhase.observe(tell(&DemoModel::stateChanged)));
    m_cancellables.push_back(m_controller.didWhisperWarmup.observe(tell(&DemoModel::stateChanged)));
    m_cancellables.push_back(m_controller.demoLevel.observe(tell(&DemoModel::levelChanged)));
}

QString DemoModel::title() const {
    return transcript().isEmpty() ? localized("onboarding.demo.title", "Say something")
                                  : localized("onboarding.demo.title.done", "That's how it works");
}

QString DemoModel::bodyBefore() const {
    return m_settings.hotkeyTapToToggle.get() ? localized("onboarding.demo.body.before.tap", "Tap ")
                                              : localized("onboarding.demo.body.before", "Press and hold ");
}

QString DemoModel::hotkey() const {
    return m_settings.hotkeyBinding.get().displayString(m_layout);
}

QString DemoModel::bodyAfter() const {
    return m_settings.hotkeyTapToToggle.get()
               ? localized("onboarding.demo.body.after.tap",
                           " anywhere on your keyboard, or hold the button below. Speak, tap again, and your "
                           "words land right here.")
               : localized(
                     "onboarding.demo.body.after",
                     " anywhere on your keyboard, or hold the button below. Speak, release, and your words "
                     "land right here.");
}

QString DemoModel::missingBody() const {
    return localized("onboarding.demo.missing.body",
                     "Talvera needs a couple of permissions before the demo can run. Grant them and the demo "
                     "unlocks automatically.");
}

bool DemoModel::canRun() const {
    return m_controller.hasPermissions();
}

QString DemoModel::state() const {
    return rawValue(m_controller.demoPhase.get().kind);
}

QString DemoModel::output() const {
    switch (m_controller.demoPhase.get().kind) {
    case Kind::Idle:
        return m_controller.didWhisperWarmup.get()
                   ? localized("onboarding.demo.output.idle", "Your words will appear here.")
                   : localized("onboarding.demo.output.warmup", "Your words will appear here. The first time "
                                                                "takes a moment longer, while the speech "
                                                                "model is loaded.");
    case Kind::Recording:
        return localized("onboarding.demo.output.recording", "Listening… speak now");
    case Kind::Transcribing:
        return localized("onboarding.demo.output.transcribing", "Turning speech into text…");
    case Kind::Done:
        return m_controller.demoTranscript.get().isEmpty()
                   ? localized("onboarding.demo.output.empty", "(nothing recognized — try again)")
                   : QString();
    case Kind::Error:
        return formatted(localized("onboarding.demo.output.error", "Error: %@"),
                         m_controller.demoPhase.get().message);
    }
    Q_UNREACHABLE();
}

QString DemoModel::transcript() const {
    return m_controller.demoPhase.get().is(Kind::Done) ? m_controller.demoTranscript.get() : QString();
}

QString DemoModel::outputTitle() const {
    return localized("onboarding.demo.output.title", "What you said");
}

QString DemoModel::caption() const {
    switch (m_controller.demoPhase.get().kind) {
    case Kind::Idle:
    case Kind::Transcribing:
        return localized("onboarding.demo.button.hold", "Hold to talk");
    case Kind::Recording:
        return m_settings.hotkeyTapToToggle.get() && !m_isButtonHeld
                   ? localized("onboarding.demo.button.recording.tap",
                               "Recording — tap again when you're done")
                   : localized("onboarding.demo.button.recording", "Recording — let go when you're done");
    case Kind::Done:
    case Kind::Error:
        return localized("onboarding.demo.button.tryAgain", "Hold to try again");
    }
    Q_UNREACHABLE();
}

double DemoModel::level() const {
    return static_cast<double>(m_controller.demoLevel.get());
}

void DemoModel::pressStart() {
    m_isButtonHeld = true;
    m_controller.demoPressStart();
}

void DemoModel::pressEnd() {
    m_isButtonHeld = false;
    m_controller.demoPressEnd();
}

} // namespace talvera
