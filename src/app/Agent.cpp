// SPDX-License-Identifier: MIT
#include "app/Agent.h"

#include "app/Machine.h"
#include "shell/hud/FocusNoticeText.h"
#include "text/Localization.h"
#include "views/panel/QuickMenuPanel.h"

#include <QLocale>

namespace talvera {

namespace {

constexpr Duration noticeTime = seconds(6.0);
constexpr Duration windowsDelay = seconds(0.5);

} // namespace

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
    , m_windows(machine, m_settings)
    , m_hud(machine.actor, [this] { return m_windows.takeHUDPanel(m_hud.stateHolder()); })
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
    , m_stats({machine.actor, machine.background, machine.sessions, machine.files, machine.directories,
               machine.console})
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
            .menuPanel = {m_machine.actor, m_machine.statusItem, m_machine.panelDesktop,
                          [this] { return makePanelWindow(); }},
            .readiness = m_readiness,
            .onboarding = m_onboarding,
            .onboardingWindow = m_onboardingWindow,
            .warmup = m_warmup};
}

void Agent::launch() {
#ifdef TALVERA_DIAGNOSTICS
    if (StateTrace::isWanted())
        m_trace.emplace(m_machine.console, StateTrace::Subjects{m_menuBar, m_hud, m_readiness});
#endif
    m_delegate->applicationDidFinishLaunching();
    // The first dictation shall find its windows made, and the launch not wait for them.
    m_machine.actor.startTimer(windowsDelay, [this] { m_windows.prepare(m_hud.stateHolder()); });
}

void Agent::startedAgain() {
    m_machine.console.print(QStringLiteral("[app] Talvera is running already"));
    m_delegate->startedAgain();
}

std::unique_ptr<MenuPanelWindow> Agent::makePanelWindow() {
    auto& model = m_panelModel.emplace(MenuPanelModel::Environment{
        m_menuBar, m_settings, m_stats, m_readiness, m_machine.languageModel, m_machine.keyboardLayout});
    model.onSettings = [this] { openSettings(); };
    model.onCheckForUpdates = [this] { m_updater.checkForUpdates(); };
    model.onQuit = [this] { m_machine.application.terminate(); };
    model.onLanguageModelSettings = [this] {
        m_hud.showNotice(localized("hud.languageModel.none", "This computer has no on-device language model"),
                         DictationHUDState::NoticeTone::Info, noticeTime);
    };
    model.onAdvice = [this](const QString& text) {
        m_hud.showNotice(text, DictationHUDState::NoticeTone::Warn, noticeTime);
    };
    return std::make_unique<QuickMenuPanel>(m_windows.views(), model, m_machine.panelDesktop);
}

/// Until there is a window for them, the settings are the file that holds them.
void Agent::openSettings() {
    m_delegate->closePanel();
    const auto& place = m_machine.directories.configuration;
    m_machine.fileBrowser.show(place);
    m_hud.showNotice(formatted(localized("hud.settings.place", "Your settings are kept in %@"), place),
                     DictationHUDState::NoticeTone::Info, noticeTime);
}

} // namespace talvera
