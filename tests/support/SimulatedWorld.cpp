// SPDX-License-Identifier: MIT
#include "SimulatedWorld.h"

#include "shell/hud/FocusNoticeText.h"

#include <cmath>

namespace talvera::test {

namespace {

using nlohmann::ordered_json;

std::string utf8(const QString& text) {
    return text.toStdString();
}

QString words(const ordered_json& value) {
    return QString::fromStdString(value.is_string() ? value.get<std::string>() : value.dump());
}

bool isChunk(const QString& path) {
    return path.contains(QStringLiteral("-chunk"));
}

ordered_json describe(const DictationHUDState& state, Duration noticeDuration) {
    ordered_json fields{{"state", utf8(caseName(state))}};
    if (const auto* notice = state.as<DictationHUDState::Notice>()) {
        fields["text"] = utf8(notice->text);
        fields["tone"] = utf8(caseName(notice->tone));
        fields["seconds"] = toSeconds(noticeDuration);
    } else if (const auto* translating = state.as<DictationHUDState::Translating>()) {
        fields["name"] = utf8(translating->targetDisplayName);
    } else if (const auto* permission = state.as<DictationHUDState::PermissionRequired>()) {
        fields["kind"] = utf8(caseName(permission->kind));
    }
    return fields;
}

} // namespace

bool Effect::isTold() const {
    return effect != "trace" && effect != "wavDeleted";
}

QString Effect::text() const {
    QStringList parts{QString::fromStdString(effect)};
    for (const auto& value : fields)
        parts << words(value);
    return parts.join(u' ');
}

SimulatedMachine::SimulatedMachine() {
    disk.addExecutable(directories.resources + QStringLiteral("/Resources/whisper-cli"));
    setModelReady(true);
    workspace.runInFront({100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")});
    setTextFieldFocused(true);
    microphone.secondsPerRecording = 2.0;
    ToolRun run;
    run.text = "hello world";
    tool.setRuns({run});
}

void SimulatedMachine::setModelReady(bool ready) {
    const auto models = directories.applicationSupport + QStringLiteral("/Talvera/models");
    const auto model = models + QStringLiteral("/ggml-medium-q5_0.bin");
    if (ready) {
        disk.createDirectories(models + QStringLiteral("/ggml-medium-encoder.mlmodelc"));
        disk.write(model, "model");
    } else if (disk.exists(model)) {
        disk.remove(model);
    }
}

double SimulatedMachine::recordedSeconds() const {
    constexpr double rate = 16000.0;
    return converters.refuses ? 0 : std::round(microphone.secondsPerRecording * rate) / rate;
}

void SimulatedMachine::setTextFieldFocused(bool focused) {
    m_textFieldFocused = focused;
    accessibility.setTextFieldFocused(focused);
}

SimulatedAgent::SimulatedAgent(SimulatedMachine& simulated, AppSettings& preferences)
    : machine(simulated)
    , settings(preferences)
    , models(machine.files, machine.directories)
    , recorder(machine.audioEngine, machine.converters, machine.files, machine.actor)
    , whisper(
          WhisperRunner::makeDefault(machine.tool, machine.files, machine.directories, models.modelMainURL))
    , transcription(machine.actor, machine.background, machine.files, machine.audioFiles, machine.console)
    , hud(machine.actor,
          [this] {
              auto made = std::make_unique<SimulatedHUDPanel>(machine.actor);
              panel = made.get();
              return made;
          })
    , menuBar(machine.actor, settings)
    , readiness({machine.actor, machine.microphonePermission, machine.accessibility, machine.languageModel,
                 machine.settingsPanels, machine.activation})
    , focus(machine.actor, machine.accessibility, machine.workspace)
    , preferredDelivery(settings)
    , inserter({machine.actor, machine.workspace, machine.typing, machine.keyPoster, machine.pasteboard},
               focus, preferredDelivery,
               [this](const FocusNotice& notice) {
                   const auto shown = focusNoticeText(notice);
                   hud.showNotice(shown.text, shown.tone, shown.autoHideAfter);
               })
    , hotkey(machine.actor, machine.keyboard, machine.console)
    , stats({machine.actor, machine.background, machine.databases, machine.files, machine.directories,
             machine.console})
    , onboardingWindow(machine.console)
    , warmup(machine.console)
    , delegate(std::make_shared<AppDelegate>(environment())) {}

SimulatedAgent::~SimulatedAgent() = default;

AgentEnvironment SimulatedAgent::environment() {
    return {.actor = machine.actor,
            .directories = machine.directories,
            .files = machine.files,
            .application = machine.application,
            .accessibility = machine.accessibility,
            .microphone = machine.microphonePermission,
            .languageModel = machine.languageModel,
            .languageRecognizer = machine.languageRecognizer,
            .loginItem = machine.loginItem,
            .sounds = machine.sounds,
            .preferences = machine.preferences,
            .console = machine.console,
            .recorder = recorder,
            .whisper = whisper,
            .transcription = transcription,
            .focus = focus,
            .inserter = inserter,
            .hotkey = hotkey,
            .translateToggle = translateToggle,
            .settings = settings,
            .models = models,
            .stats = stats,
            .menuBar = menuBar,
            .hud = hud,
            .menuPanel = {machine.actor, machine.statusItem, machine.pointer,
                          [this] { return std::make_unique<FakeMenuPanelWindow>(machine.actor); }},
            .readiness = readiness,
            .onboarding = onboarding,
            .onboardingWindow = onboardingWindow,
            .warmup = warmup,
            .trace =
                [this](const QString& line) {
                    if (onTrace)
                        onTrace(line);
                },
            .makeFreshName =
                [this] {
                    return QStringLiteral("00000000-0000-4000-8000-%1").arg(++m_names, 12, 16, QChar(u'0'));
                }};
}

SimulatedWorld::SimulatedWorld() {
    observeMachine();
}

SimulatedWorld::~SimulatedWorld() {
    if (!m_agent)
        return;
    // A task that is suspended for ever would never be freed, and a poll never ends while something is
    // missing.
    onEffect = nullptr;
    microphonePermission.current = AuthorizationStatus::Authorized;
    accessibility.trusted = true;
    languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    m_agent->readiness.refresh();
    actor.runToRest(std::chrono::hours(24 * 365));
}

void SimulatedWorld::launch() {
    m_agent = std::make_unique<SimulatedAgent>(*this, settings);
    observeAgent();
    m_agent->delegate->applicationDidFinishLaunching();
    actor.settle();
}

void SimulatedWorld::observeMachine() {
    audioEngine.onStarted = [this] { note("recorderStart"); };
    audioEngine.onStopped = [this] {
        if (recordingsFail)
            disk.failWriteAfter(0, ENOSPC);
        else
            note("recorderStop", {{"seconds", recordedSeconds()}});
    };
    databases.onInsert = [this](const DictationSession& session) {
        note("statistics", {{"audioDuration", session.audioDuration},
                            {"wordCount", session.wordCount},
                            {"characterCount", session.characterCount},
                            {"languageCode", utf8(session.languageCode)},
                            {"translateEnabled", session.translateEnabled},
                            {"polishEnabled", session.polishEnabled},
                            {"polishBackend", utf8(session.polishBackend)}});
    };
    sounds.onPlay = [this](const QString& sound) { note("sound", {{"name", utf8(sound)}}); };
    tool.setOnRun([this](const ToolRequest& run) {
        note("recognise", {{"mode", run.translates ? "translateToEnglish" : "transcribe"},
                           {"language", utf8(run.language)},
                           {"prompt", run.prompt ? ordered_json(utf8(*run.prompt)) : ordered_json(nullptr)},
                           {"audioSeconds", run.audioSeconds}});
    });
    keyPoster.onTyping = [this](const QString& text) { note("type", {{"text", utf8(text)}}); };
    pasteboard.onText = [this](const QString& text) { note("clipboard", {{"text", utf8(text)}}); };
    // A paste begins with a clipboard write of its own, which is no effect beside it.
    keyPoster.onPaste = [this] {
        const auto written = effects.back();
        effects.pop_back();
        note("paste", written.fields);
    };
    workspace.onActivate = [this](pid_t pid) {
        note("activate", {{"pid", pid}});
        if (activationLosesTextField)
            setTextFieldFocused(false);
    };
    settingsPanels.onOpen = [this](SettingsPanels::Panel panel) {
        note("openSettings",
             {{"kind", panel == SettingsPanels::Panel::Microphone ? "microphone" : "accessibility"}});
    };
    files.onRemoved = [this](const QString& path) {
        if (path.endsWith(QStringLiteral(".wav")) && !isChunk(path))
            note("wavDeleted");
    };
}

void SimulatedWorld::observeAgent() {
    auto& agent = *m_agent;
    m_observations.push_back(agent.menuBar.state.observe([this](MenuBarController::State state) {
        note("menu", {{"state", utf8(caseName(state))}});
    }));
    m_observations.push_back(agent.hud.stateHolder().state.observe([this](const DictationHUDState& state) {
        note("hud", describe(state, m_agent->hud.noticeDuration()));
    }));
    agent.onboardingWindow.onShow = [this] { note("onboardingWindow"); };
    agent.onTrace = [this](const QString& line) {
        // The translate hotkey makes no tap yet, which the repair of the taps would tell at every launch.
        if (!line.startsWith(QStringLiteral("Translate-toggle event tap")))
            note("trace", {{"line", utf8(line)}});
    };
}

void SimulatedWorld::note(std::string effect, ordered_json fields) {
    effects.push_back({actor.elapsed(), std::move(effect), std::move(fields)});
    if (onEffect)
        onEffect(effects.back());
}

QStringList SimulatedWorld::story(const QStringList& kinds) const {
    QStringList lines;
    for (const auto& effect : effects) {
        if (kinds.contains(QString::fromStdString(effect.effect)))
            lines << effect.text();
    }
    return lines;
}

QStringList SimulatedWorld::story() const {
    QStringList lines;
    for (const auto& effect : effects) {
        if (effect.isTold())
            lines << effect.text();
    }
    return lines;
}

QStringList SimulatedWorld::traces() const {
    QStringList lines;
    for (const auto& effect : effects) {
        if (effect.effect == "trace")
            lines << words(effect.fields["line"]);
    }
    return lines;
}

QStringList SimulatedWorld::wavFiles() const {
    QStringList found;
    for (const auto& path : disk.files()) {
        if (path.endsWith(QStringLiteral(".wav")) && !isChunk(path))
            found << path;
    }
    return found;
}

QStringList SimulatedWorld::chunkFiles() const {
    QStringList found;
    for (const auto& path : disk.files()) {
        if (isChunk(path))
            found << path;
    }
    return found;
}

} // namespace talvera::test
