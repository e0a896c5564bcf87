// SPDX-License-Identifier: MIT
#include "core/Agent.h"

#include "concurrency/Lifetime.h"
#include "core/AgentControl.h"
#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "core/Machine.h"
#include "core/OutputPipeline.h"
#include "core/PermissionPrompt.h"
#include "core/Warmup.h"
#include "core/WindowFactory.h"
#include "delivery/FocusTracker.h"
#include "delivery/TextInserter.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "models/ModelDownloader.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "persistence/PreferredDelivery.h"
#include "persistence/StatsStore.h"
#include "platform/desktop/FileBrowser.h"
#include "platform/desktop/Notifier.h"
#include "platform/desktop/SettingsPanels.h"
#include "platform/language/LanguageModelChoice.h"
#include "platform/system/ApplicationHost.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/PlatformError.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/hud/FocusNoticeText.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/OnboardingModel.h"
#include "shell/onboarding/OnboardingWindow.h"
#include "shell/panel/MenuPanelController.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/HotkeyRecorderModel.h"
#include "shell/settings/SettingsModel.h"
#include "shell/settings/SettingsWindow.h"
#include "shell/settings/TapToToggleRule.h"
#include "shell/settings/Updater.h"
#include "shell/settings/relaunchApplication.h"
#include "shell/texts/InterfaceLanguage.h"
#include "shell/texts/shownPath.h"
#include "speech/AudioRecorder.h"
#include "speech/ChunkedTranscription.h"
#include "speech/WhisperRunner.h"
#include "text/Localization.h"

#include <QDir>

#include <utility>

namespace talvera {

namespace {

constexpr Duration noticeTime = seconds(6.0);

/// What the folder of language models says of itself.
QString noteForLanguageModels() {
    const QStringList paragraphs{
        localized("languageModels.note.place",
                  "Put a language model into this folder, as a GGUF file. Talvera uses it to clean up and "
                  "translate what you dictate, on this computer alone."),
        localized("languageModels.note.kind",
                  "A model that follows instructions (“instruct”) is needed. Its file has to be smaller than "
                  "the memory that is free on this computer."),
        localized("languageModels.note.several", "Of several files none is used until you have chosen one.")};
    return paragraphs.join(QStringLiteral("\n\n")) + u'\n';
}

} // namespace

/// The parts, and how they are joined.
class Agent::Wiring {
public:
    Wiring(const Machine& machine, AppSettings& settings, WindowFactory& windows, const Trace& onTrace);

    std::shared_ptr<OutputPipeline> makePipeline();
    void tellOfLostMicrophone();
    void tellOfMissingFont();
    void openSettings(std::optional<SettingsSectionID> section);

private:
    const Machine m_machine; ///< everything below works with it

public:
    // Each after those that it works with.
    InterfaceLanguage interfaceLanguage; ///< first, so that everything speaks it
    AppSettings& settings;
    TapToToggleRule tapToToggleRule;
    ModelStore models;
    AudioRecorder recorder;
    WhisperRunner whisper;
    EarlyRecognition early;
    ChunkedTranscription transcription;
    DictationHUDController hud;
    MenuBarController menuBar;
    ReadinessMonitor readiness;
    Updater updater;
    FocusTracker focus;
    PreferredDelivery delivery;
    TextInserter inserter;
    HotkeyManager hotkey;
    TranslateToggleHotkey translateToggle;
    StatsStore stats;
    Warmup warmup;
    ModelDownloader downloader;
    OnboardingController onboarding;
    std::optional<HotkeyRecorderModel> hotkeyRecorder; ///< once the wizard has been opened
    std::optional<OnboardingModel> onboardingModel;    ///< likewise
    OnboardingWindow onboardingWindow;
    std::optional<HotkeyRecorderModel> settingsHotkey; ///< once the settings have been opened
    std::optional<HotkeyRecorderModel> settingsToggle; ///< likewise
    SettingsWindow settingsWindow;
    std::optional<MenuPanelModel> panelModel; ///< once the panel has been opened
    std::shared_ptr<AppDelegate> delegate;    ///< all that reacts; once it is gone, nothing begins any more
    std::optional<AgentControl> control;      ///< until `stop`

private:
    std::shared_ptr<AppDelegate> makeDelegate();
    std::shared_ptr<DictationController> makeDictation(std::shared_ptr<PermissionPrompt> permissions);
    std::unique_ptr<MenuPanelController> makeMenuPanel();
    std::unique_ptr<MenuPanelWindow> makePanelWindow();
    std::unique_ptr<WizardWindow> makeWizardWindow();
    WhisperRunner makeRunner() const;
    void openKeyboardSettings();
    void openLanguageModelFolder();
    std::unique_ptr<SettingsModel> makeSettingsModel();
    void makeSettingsRecorders();
    Trace trace();

    WindowFactory& m_windows;
    const Trace& m_onTrace;
    Subscription m_recordingEnd;
    Lifetime m_lifetime;
};

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

std::unique_ptr<MenuPanelController> Agent::Wiring::makeMenuPanel() {
    return std::make_unique<MenuPanelController>(
        menuBar, settings, stats,
        MenuPanelController::Parts{m_machine.actor, m_machine.desktop.statusItem, m_machine.desktop.pointer,
                                   [this] { return makePanelWindow(); }});
}

std::unique_ptr<MenuPanelWindow> Agent::Wiring::makePanelWindow() {
    auto& model = panelModel.emplace(MenuPanelModel::Parts{menuBar, settings, stats, readiness,
                                                           m_machine.language.model,
                                                           m_machine.keyboard.layout, translateToggle});
    model.onSettings = [this] { openSettings({}); };
    model.onCheckForUpdates = [this] { updater.checkForUpdates(); };
    model.followUpdateCheck(updater.isChecking);
    model.onQuit = [this] { m_machine.system.application.terminate(); };
    model.onLanguageModelSettings = [this] { openLanguageModelFolder(); };
    model.onAdvice = [this](const QString& text) {
        hud.showRemark(text, DictationHUDState::NoticeTone::Warn, noticeTime);
    };
    return m_windows.makeMenuPanel(model);
}

std::unique_ptr<WizardWindow> Agent::Wiring::makeWizardWindow() {
    if (!onboardingModel) {
        const auto& keyboard = m_machine.keyboard;
        auto& chords = hotkeyRecorder.emplace(
            HotkeyRecorderModel::Parts{settings, m_machine.sound.player, keyboard.layout, keyboard.windowKeys,
                                       onboarding.suspendHotkey, hotkey, translateToggle},
            HotkeyRecorderModel::Shortcut::Hotkey);
        QObject::connect(&chords, &HotkeyRecorderModel::isRecordingChanged,
                         [this] { onboarding.setRecordsChord(hotkeyRecorder->isRecording()); });
        onboardingModel.emplace(
            OnboardingModel::Parts{onboarding, downloader, readiness, settings, keyboard.layout, &chords});
        onboardingModel->hotkey()->onKeyboardSettings = [this] { openKeyboardSettings(); };
    }
    return m_windows.makeWizardWindow(*onboardingModel);
}

void Agent::Wiring::openKeyboardSettings() {
    if (!m_machine.desktop.settingsPanels.open(SettingsPanels::Panel::Keyboard))
        hud.showRemark(localized("settings.none.keyboard", "This desktop has no keyboard settings to open"),
                       DictationHUDState::NoticeTone::Info, noticeTime);
}

void Agent::Wiring::openLanguageModelFolder() {
    try {
        const auto folder = m_machine.language.choice.makeFolder(noteForLanguageModels());
        m_machine.desktop.fileBrowser.show(folder);
        hud.showRemark(formatted(localized("hud.languageModel.folder", "Language models belong into %@"),
                                 shownPath(folder, QDir::homePath())),
                       DictationHUDState::NoticeTone::Info, noticeTime);
    } catch (const PlatformError&) {
        hud.showRemark(localized("hud.languageModel.none", "This computer has no on-device language model"),
                       DictationHUDState::NoticeTone::Info, noticeTime);
    }
}

/// What has been said is used; what is being said isn't heard.
void Agent::Wiring::tellOfLostMicrophone() {
    hud.showNotice(localized("hud.microphone.lost", "The microphone is gone. What you said before is kept."),
                   DictationHUDState::NoticeTone::Warn, noticeTime);
}

/// In a language that can be read, since the wanted one can't.
void Agent::Wiring::tellOfMissingFont() {
    const auto& package = interfaceLanguage.missingFont();
    if (!package)
        return;
    const auto title =
        formatted(localized("fonts.missing.title", "Your language needs the package %@"), *package);
    const auto text = localized("fonts.missing.text", "No font of this computer has its letters. Install "
                                                      "the package, then start Talvera again.");
    m_machine.desktop.notifier.notify(title, text, m_lifetime.ifAlive([this, title](bool shown) {
        if (!shown)
            hud.showRemark(title, DictationHUDState::NoticeTone::Warn, noticeTime);
    }));
}

void Agent::Wiring::openSettings(std::optional<SettingsSectionID> section) {
    delegate->closePanel();
    settingsWindow.show(section);
}

std::unique_ptr<SettingsModel> Agent::Wiring::makeSettingsModel() {
    makeSettingsRecorders();
    const auto relaunch = [this] {
        relaunchApplication(m_machine.actor, m_machine.system.relauncher,
                            [&application = m_machine.system.application] { application.terminate(); });
    };
    return std::make_unique<SettingsModel>(
        SettingsModel::Parts{.general = {.settings = settings,
                                         .language = interfaceLanguage,
                                         .loginItem = m_machine.system.loginItem,
                                         .sounds = m_machine.sound.player,
                                         .relaunch = relaunch},
                             .hotkey = {.settings = settings,
                                        .layout = m_machine.keyboard.layout,
                                        .recorder = *settingsHotkey,
                                        .openKeyboardSettings = [this] { openKeyboardSettings(); }},
                             .toggleRecorder = *settingsToggle,
                             .cleanup = {.settings = settings,
                                         .readiness = readiness,
                                         .model = m_machine.language.model,
                                         .choice = m_machine.language.choice,
                                         .openModelSettings = [this] { openLanguageModelFolder(); }},
                             .about = {.actor = m_machine.actor,
                                       .machine = m_machine.system.description,
                                       .pasteboard = m_machine.desktop.pasteboard,
                                       .typing = m_machine.keyboard.typing}});
}

void Agent::Wiring::makeSettingsRecorders() {
    if (settingsHotkey)
        return;
    const auto& keyboard = m_machine.keyboard;
    const HotkeyRecorderModel::Parts parts{
        settings, m_machine.sound.player, keyboard.layout, keyboard.windowKeys, onboarding.suspendHotkey,
        hotkey,   translateToggle};
    for (auto* model : {&settingsHotkey.emplace(parts, HotkeyRecorderModel::Shortcut::Hotkey),
                        &settingsToggle.emplace(parts, HotkeyRecorderModel::Shortcut::TranslateToggle)}) {
        QObject::connect(model, &HotkeyRecorderModel::isRecordingChanged, [this, model] {
            if (model->isRecording() && delegate)
                delegate->endPressInHand();
        });
    }
}

Trace Agent::Wiring::trace() {
    return [this](const QString& line) {
        if (m_onTrace)
            m_onTrace(line);
    };
}

Agent::Agent(const Machine& machine, AppSettings& settings, WindowFactory& windows)
    : m_wiring(std::make_unique<Wiring>(machine, settings, windows, onTrace))
    , models(m_wiring->models)
    , recorder(m_wiring->recorder)
    , whisper(m_wiring->whisper)
    , hud(m_wiring->hud)
    , menuBar(m_wiring->menuBar)
    , readiness(m_wiring->readiness)
    , focus(m_wiring->focus)
    , hotkey(m_wiring->hotkey)
    , translateToggle(m_wiring->translateToggle)
    , onboarding(m_wiring->onboarding) {}

Agent::~Agent() = default;

void Agent::launch() {
    recorder.setOnLost([wiring = m_wiring.get()] { wiring->tellOfLostMicrophone(); });
    delegate().applicationDidFinishLaunching();
    m_wiring->tellOfMissingFont();
}

void Agent::prepareWindows() {
    hud.preparePanel();
}

void Agent::stop() {
    m_wiring->control.reset();
    m_wiring->early.end();
    m_wiring->delegate.reset();
}

AppDelegate& Agent::delegate() {
    return *m_wiring->delegate;
}

void Agent::startedAgain(const LaunchRequest& request) {
    if (m_wiring->control)
        m_wiring->control->startedAgain(request);
}

void Agent::openSettings(std::optional<SettingsSectionID> section) {
    m_wiring->openSettings(section);
}

SettingsWindow& Agent::settingsWindow() {
    return m_wiring->settingsWindow;
}

QString Agent::obey(const AgentCommand& command, CommandedHotkey::Begun begun) {
    return m_wiring->control ? m_wiring->control->obey(command, begun) : QString();
}

std::shared_ptr<OutputPipeline> Agent::makePipeline() {
    return m_wiring->makePipeline();
}

MenuPanelModel* Agent::panelModel() {
    return m_wiring->panelModel ? &*m_wiring->panelModel : nullptr;
}

} // namespace talvera
