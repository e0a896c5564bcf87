// SPDX-License-Identifier: MIT
#include "app/Agent.h"

#include "app/Machine.h"
#include "shell/FocusNoticeText.h"
#include "shell/UnseenHUDPanel.h"

#include <QLocale>

namespace talvera {

Agent::Agent(Machine& machine)
    : m_machine(machine)
    , m_settings(machine.preferences)
    , m_language({machine.files, machine.directories, machine.console}, m_settings.appLanguage.get(),
                 QLocale::system().uiLanguages())
    , m_models(machine.files, machine.directories)
    , m_recorder(machine.microphone, machine.converters, machine.files, machine.actor)
    , m_whisper(WhisperRunner::makeDefault(machine.processes, machine.files, machine.directories,
                                           m_models.modelMainURL))
    , m_transcription(machine.actor, machine.background, machine.files, machine.audioFiles, machine.console)
    , m_hud(machine.actor, [] { return std::make_unique<UnseenHUDPanel>(); })
    , m_menuBar(machine.actor, m_settings)
    , m_readiness({machine.actor, machine.microphonePermission, machine.accessibility, machine.languageModel,
                   machine.settingsPanels, machine.activation})
    , m_updater(machine.updates, machine.notifier, m_hud)
    , m_focus(machine.actor, machine.accessibility, machine.workspace)
    , m_delivery(m_settings)
    , m_inserter({machine.actor, machine.workspace, machine.typing, machine.keys, machine.pasteboard},
                 m_focus, m_delivery,
                 [this](const FocusNotice& notice) {
                     const auto shown = focusNoticeText(notice);
                     m_hud.showNotice(shown.text, shown.tone, shown.autoHideAfter);
                 })
    , m_hotkey(machine.actor, machine.keyboard, machine.console)
    , m_stats({machine.actor, machine.sessions, machine.files, machine.directories, machine.console})
    , m_onboardingWindow(machine.console)
    , m_warmup(machine.console)
    , m_delegate(std::make_shared<AppDelegate>(environment())) {}

Agent::~Agent() {
    m_machine.endWork(); // a recogniser that still runs works with our parts
}

AgentEnvironment Agent::environment() {
    return {.actor = m_machine.actor,
            .directories = m_machine.directories,
            .files = m_machine.files,
            .application = m_machine.application,
            .accessibility = m_machine.accessibility,
            .microphone = m_machine.microphonePermission,
            .languageModel = m_machine.languageModel,
            .languageRecognizer = m_machine.languageRecognizer,
            .loginItem = m_machine.loginItem,
            .sounds = m_machine.sounds,
            .preferences = m_machine.preferences,
            .console = m_machine.console,
            .recorder = m_recorder,
            .whisper = m_whisper,
            .transcription = m_transcription,
            .focus = m_focus,
            .inserter = m_inserter,
            .hotkey = m_hotkey,
            .translateToggle = m_translateToggle,
            .settings = m_settings,
            .models = m_models,
            .stats = m_stats,
            .menuBar = m_menuBar,
            .hud = m_hud,
            .readiness = m_readiness,
            .onboarding = m_onboarding,
            .onboardingWindow = m_onboardingWindow,
            .warmup = m_warmup};
}

void Agent::launch() {
    if (StateTrace::isWanted())
        m_trace.emplace(m_machine.console, StateTrace::Subjects{m_menuBar, m_hud, m_readiness});
    m_delegate->applicationDidFinishLaunching();
}

void Agent::startedAgain() {
    m_machine.console.print(QStringLiteral("[app] Talvera is running already"));
}

} // namespace talvera
