// SPDX-License-Identifier: MIT
#include "core/AgentWiring.h"

#include "core/DictationController.h"
#include "core/OutputPipeline.h"
#include "core/PermissionPrompt.h"
#include "core/WindowFactory.h"
#include "persistence/AppSettings.h"
#include "shell/hud/FocusNoticeText.h"
#include "shell/panel/MenuPanelController.h"
#include "shell/settings/SettingsModel.h"

#include <utility>

// How the parts are joined.

namespace talvera {

Agent::Wiring::Wiring(const Machine& machine, AppSettings& userSettings, WindowFactory& windows,
                      const Trace& onTrace)
    : m_machine(machine)
    , interfaceLanguage(
          {machine.system.files, machine.system.directories, machine.system.console, machine.language.fonts},
          userSettings.appLanguage.get(), machine.language.preferred)
    , settings(userSettings)
    , tapToToggleRule(settings)
    , models(machine.system.files, machine.system.directories,
             machine.system.modelSource.hasEncoder() ? ModelStore::Items::MainFileAndEncoder
                                                     : ModelStore::Items::MainFileAlone)
    , recorder(machine.sound.engine, machine.sound.converters, machine.system.files, machine.actor)
    , whisper(makeRunner())
    , early({machine.actor, machine.background, machine.system.files, recorder, whisper})
    , transcription(machine.actor, machine.background, machine.system.files, machine.sound.files,
                    machine.system.console, &early)
    , hud(machine.actor, [this] { return m_windows.makeHUDPanel(hud.stateHolder()); })
    , menuBar(machine.actor, settings)
    , readiness({machine.actor, machine.sound.permission, machine.desktop.access, machine.language.model,
                 machine.desktop.settingsPanels, machine.desktop.activation})
    , updater(machine.system.updates, machine.desktop.notifier, hud)
    , focus(machine.actor, machine.desktop.accessibility, machine.desktop.workspace)
    , delivery(settings)
    , inserter({machine.actor, machine.desktop.workspace, machine.keyboard.typing, machine.keyboard.poster,
                machine.desktop.pasteboard},
               focus, delivery,
               [this](const FocusNotice& notice) {
                   const auto shown = focusNoticeText(notice);
                   hud.showNoticeAfterFade(shown.text, shown.tone, shown.autoHideAfter);
               })
    , hotkey(machine.actor, machine.keyboard.eventTaps, machine.system.console)
    , translateToggle(machine.actor, machine.keyboard.eventTaps, machine.system.console)
    , stats({machine.actor, machine.background, machine.system.sessions, machine.system.files,
             machine.system.directories, machine.system.console})
    , warmup({.actor = machine.actor,
              .background = machine.background,
              .files = machine.system.files,
              .directories = machine.system.directories,
              .makeFreshName = machine.system.makeFreshName,
              .models = models,
              .languageModel = machine.language.model,
              .console = machine.system.console})
    , downloader({.background = machine.background,
                  .network = machine.system.network,
                  .files = machine.system.files,
                  .processes = machine.system.processes,
                  .directories = machine.system.directories,
                  .makeFreshName = machine.system.makeFreshName,
                  .store = models,
                  .source = machine.system.modelSource})
    , onboarding({.actor = machine.actor,
                  .background = machine.background,
                  .files = machine.system.files,
                  .directories = machine.system.directories,
                  .makeFreshName = machine.system.makeFreshName,
                  .audio = machine.sound.engine,
                  .converters = machine.sound.converters,
                  .settings = settings,
                  .models = models,
                  .readiness = readiness,
                  .downloader = downloader,
                  .warmup = warmup,
                  .makeRunner = [this] { return makeRunner(); }})
    , onboardingWindow(machine.actor, onboarding, [this] { return makeWizardWindow(); })
    , settingsWindow(machine.actor,
                     {.model = [this] { return makeSettingsModel(); },
                      .window = [this](SettingsModel& model) { return m_windows.makeSettingsWindow(model); }})
    , m_windows(windows)
    , m_onTrace(onTrace) {
    delegate = makeDelegate();
    control.emplace(
        AgentControl::Parts{*delegate, settings, models, menuBar, hotkey, readiness, machine.system.console,
                            [this](std::optional<SettingsSectionID> section) { openSettings(section); }});
    onboarding.onTakingHotkey = [this] {
        if (delegate)
            delegate->endPressInHand();
    };
    m_recordingEnd = menuBar.state.observe([this](MenuBarController::State state) {
        if (state == MenuBarController::State::Idle || state == MenuBarController::State::Error)
            hud.recordingEnded();
    });
}

WhisperRunner Agent::Wiring::makeRunner() const {
    return WhisperRunner::makeDefault(m_machine.system.processes, m_machine.system.files,
                                      m_machine.system.directories, models.modelMainURL);
}

std::shared_ptr<AppDelegate> Agent::Wiring::makeDelegate() {
    auto permissions =
        std::make_shared<PermissionPrompt>(PermissionPrompt::Parts{.microphone = m_machine.sound.permission,
                                                                   .access = m_machine.desktop.access,
                                                                   .settings = settings,
                                                                   .readiness = readiness,
                                                                   .hud = hud});
    return std::make_shared<AppDelegate>(
        AppDelegate::Parts{.actor = m_machine.actor,
                           .application = m_machine.system.application,
                           .directories = m_machine.system.directories,
                           .loginItem = m_machine.system.loginItem,
                           .preferences = m_machine.system.preferences,
                           .console = m_machine.system.console,
                           .access = m_machine.desktop.access,
                           .statusItem = m_machine.desktop.statusItem,
                           .settings = settings,
                           .models = models,
                           .whisper = whisper,
                           .hotkey = hotkey,
                           .translateToggle = translateToggle,
                           .readiness = readiness,
                           .hud = hud,
                           .onboarding = onboarding,
                           .onboardingWindow = onboardingWindow,
                           .warmup = warmup,
                           .permissions = permissions,
                           .dictation = makeDictation(permissions),
                           .makeMenuPanel = [this] { return makeMenuPanel(); },
                           .trace = trace()});
}

std::shared_ptr<DictationController>
Agent::Wiring::makeDictation(std::shared_ptr<PermissionPrompt> permissions) {
    return std::make_shared<DictationController>(
        DictationController::Parts{.actor = m_machine.actor,
                                   .files = m_machine.system.files,
                                   .directories = m_machine.system.directories,
                                   .makeFreshName = m_machine.system.makeFreshName,
                                   .languageModel = m_machine.language.model,
                                   .sounds = m_machine.sound.player,
                                   .statusItem = m_machine.desktop.statusItem,
                                   .notifier = m_machine.desktop.notifier,
                                   .settings = settings,
                                   .models = models,
                                   .recorder = recorder,
                                   .early = early,
                                   .focus = focus,
                                   .inserter = inserter,
                                   .menuBar = menuBar,
                                   .hud = hud,
                                   .readiness = readiness,
                                   .onboarding = onboarding,
                                   .onboardingWindow = onboardingWindow,
                                   .permissions = std::move(permissions),
                                   .pipeline = makePipeline(),
                                   .trace = trace()});
}

std::shared_ptr<OutputPipeline> Agent::Wiring::makePipeline() {
    return std::make_shared<OutputPipeline>(
        OutputPipeline::Parts{.actor = m_machine.actor,
                              .files = m_machine.system.files,
                              .languageModel = m_machine.language.model,
                              .languageRecognizer = m_machine.language.recognizer,
                              .whisper = whisper,
                              .transcription = transcription,
                              .inserter = inserter,
                              .settings = settings,
                              .stats = stats,
                              .menuBar = menuBar,
                              .hud = hud,
                              .readiness = readiness,
                              .trace = trace()});
}

Trace Agent::Wiring::trace() {
    return [this](const QString& line) {
        if (m_onTrace)
            m_onTrace(line);
    };
}

} // namespace talvera
