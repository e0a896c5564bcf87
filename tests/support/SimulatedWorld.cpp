// SPDX-License-Identifier: MIT
#include "SimulatedWorld.h"
#include "hotkeys/HotkeyManager.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/hud/DictationHUDState.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/readiness/ReadinessMonitor.h"

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
        fields["tone"] = utf8(rawValue(notice->tone));
        fields["seconds"] = toSeconds(noticeDuration);
    } else if (const auto* translating = state.as<DictationHUDState::Translating>()) {
        fields["name"] = utf8(translating->targetDisplayName);
    } else if (const auto* permission = state.as<DictationHUDState::PermissionRequired>()) {
        fields["kind"] = utf8(rawValue(permission->kind));
    }
    return fields;
}

} // namespace

bool isOfADictation(const QString& path) {
    return !path.contains(QStringLiteral("/talvera-demo-")) &&
           !path.contains(QStringLiteral("/talvera-warmup-"));
}

bool Effect::isTold() const {
    return effect != "trace" && effect != "wavDeleted" && effect != "request";
}

QString Effect::text() const {
    QStringList parts{QString::fromStdString(effect)};
    for (const auto& value : fields)
        parts << words(value);
    return parts.join(u' ');
}

SimulatedWorld::SimulatedWorld() {
    observeMachine();
}

SimulatedWorld::SimulatedWorld(AfterDeath afterDeath, const SimulatedWorld& before)
    : SimulatedMachine(afterDeath, before) {
    observeMachine();
}

SimulatedWorld::~SimulatedWorld() {
    if (!m_agent)
        return;
    // A task that is suspended for ever would never be freed, and a poll never ends while something is
    // missing.
    onEffect = nullptr;
    microphonePermission.current = AuthorizationStatus::Authorized;
    access.trusted = true;
    languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    m_agent->readiness.refresh();
    actor.runToRest(std::chrono::hours(24 * 365));
}

void SimulatedWorld::launch() {
    m_agent = std::make_unique<Agent>(machine(), settings, windows);
    observeAgent();
    m_agent->launch();
    actor.settle();
    m_agent->prepareWindows();
}

void SimulatedWorld::pressStart() {
    m_agent->hotkey.onPressStart();
}

void SimulatedWorld::pressEnd() {
    m_agent->hotkey.onPressEnd();
}

void SimulatedWorld::observeMachine() {
    audioEngine.onStarted = [this] {
        if (!isWizardsHotkey())
            note("recorderStart");
    };
    audioEngine.onStopped = [this] {
        if (hasAgent() && m_agent->onboarding.isDemoRecording())
            return;
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
        if (!isOfADictation(run.wav))
            return;
        note("recognise", {{"mode", run.translates ? "translateToEnglish" : "transcribe"},
                           {"language", utf8(run.language)},
                           {"prompt", run.prompt ? ordered_json(utf8(*run.prompt)) : ordered_json(nullptr)},
                           {"audioSeconds", run.audioSeconds}});
    });
    languageModel.onRequest = [this](const ModelRequestSeen& request) {
        if (!request.isWarmup())
            note("request", {{"instructions", utf8(request.instructions)}, {"input", utf8(request.prompt)}});
    };
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
    windows.onOnboardingWindow = [this] { note("onboardingWindow"); };
    files.onRemoved = [this](const QString& path) {
        if (path.endsWith(QStringLiteral(".wav")) && !isChunk(path) && isOfADictation(path))
            note("wavDeleted");
    };
}

void SimulatedWorld::observeAgent() {
    auto& agent = *m_agent;
    m_observations.push_back(agent.menuBar.state.observe([this](MenuBarController::State state) {
        note("menu", {{"state", utf8(rawValue(state))}});
    }));
    m_observations.push_back(agent.hud.stateHolder().state.observe([this](const DictationHUDState& state) {
        note("hud", describe(state, m_agent->hud.noticeDuration()));
    }));
    m_observations.push_back(
        agent.onboarding.demoPhase.observe([this, recorded = false](const DemoPhase& phase) mutable {
            const bool records = phase.is(DemoPhase::Kind::Recording);
            demoStarts += !recorded && records ? 1 : 0;
            demoEnds += recorded && !records ? 1 : 0;
            recorded = records;
        }));
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

bool SimulatedWorld::isWizardsHotkey() const {
    return m_agent && m_agent->onboarding.captureHotkey.get();
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
