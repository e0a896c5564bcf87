// SPDX-License-Identifier: MIT
#include "Scenario.h"

#include "SettingsJson.h"
#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "language/AIAvailabilityState.h"
#include "operations.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"

#include <algorithm>
#include <utility>

namespace talvera::conformance {

namespace {

using Activation = test::FakeWorkspace::Activation;

constexpr double longestScenario = 86400;
constexpr double longestRecording = 600;

double numberUpTo(const Request& request, const char* field, double most) {
    const double number = request.number(field);
    if (number < 0 || number > most)
        throw BadRequest(std::string("\"") + field + "\" must be between 0 and " +
                         std::to_string(static_cast<int>(most)));
    return number;
}

std::optional<AuthorizationStatus> microphoneFromName(const QString& name) {
    if (name == QStringLiteral("authorized"))
        return AuthorizationStatus::Authorized;
    if (name == QStringLiteral("denied"))
        return AuthorizationStatus::Denied;
    if (name == QStringLiteral("notDetermined"))
        return AuthorizationStatus::NotDetermined;
    return std::nullopt;
}

/// The reason that leads to a state of the language model; nothing when it is there.
std::optional<LanguageModel::UnavailableReason> reasonOf(AIAvailabilityState state) {
    using Reason = LanguageModel::UnavailableReason;
    switch (state) {
    case AIAvailabilityState::Available:
        return std::nullopt;
    case AIAvailabilityState::IntelligenceOff:
        return Reason::IntelligenceOff;
    case AIAvailabilityState::ModelNotReady:
        return Reason::ModelNotReady;
    case AIAvailabilityState::DeviceNotEligible:
    case AIAvailabilityState::UnsupportedOS:
        break;
    }
    return Reason::DeviceNotEligible;
}

test::ToolRun toolRun(const Request& entry) {
    test::ToolRun run;
    run.duration = seconds(entry.has("seconds") ? numberUpTo(entry, "seconds", longestScenario) : 1.0);
    if (entry.has("status"))
        run.status = entry.integer<int>("status");
    if (entry.has("stderr"))
        run.standardError = entry.text("stderr").toUtf8();
    if (run.status == 0)
        run.text = entry.text("text").toUtf8();
    return run;
}

test::ModelAnswer modelAnswer(const Request& entry) {
    test::ModelAnswer answer;
    const auto snapshots = entry.has("snapshots") ? entry.objects("snapshots") : std::vector<Request>();
    for (const auto& snapshot : snapshots) {
        const double after = snapshot.has("after") ? numberUpTo(snapshot, "after", longestScenario) : 0;
        answer.snapshots.push_back({seconds(after), snapshot.text("content")});
    }
    if (entry.has("failure")) {
        const auto failure = entry.object("failure");
        answer.failure.emplace(failure.text("debug"),
                               failure.optionalText("description").value_or(QString()));
    }
    return answer;
}

} // namespace

Scenario::Scenario(const Request& request)
    : m_request(request) {
    m_known[100] = {100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
    test::ToolRun hello;
    hello.text = "hello world";
    m_world.tool.setRuns({hello});
}

Answer Scenario::run() {
    const double until = m_request.has("until") ? numberUpTo(m_request, "until", longestScenario) : 60;
    if (m_request.has("settings")) {
        for (const auto& [property, value] : m_request.object("settings").json().items())
            test::assignSetting(m_world.settings, QString::fromStdString(property), value);
    }
    if (m_request.has("world"))
        change(m_request.object("world"));
    m_world.launch();
    if (m_request.has("world") && m_request.object("world").has("onboarding"))
        changeOnboarding(m_request.object("world").object("onboarding"));
    if (m_request.has("timeline")) {
        for (const auto& entry : m_request.objects("timeline"))
            schedule(entry);
    }
    m_world.actor.advance(seconds(until));
    m_isOver = true;
    if (m_failure)
        std::rethrow_exception(m_failure);
    return {{"effects", effects()}, {"final", final()}};
}

void Scenario::schedule(const Request& entry) {
    const double at = numberUpTo(entry, "at", longestScenario);
    m_world.actor.startTimer(seconds(at), [this, entry] {
        if (m_isOver || m_failure)
            return;
        try {
            perform(entry);
        } catch (const std::exception&) {
            m_failure = std::current_exception();
        }
    });
}

void Scenario::perform(const Request& entry) {
    const auto what = entry.text("do");
    auto& agent = m_world.agent();
    if (what == QStringLiteral("pressStart"))
        m_world.pressStart();
    else if (what == QStringLiteral("pressEnd"))
        m_world.pressEnd();
    else if (what == QStringLiteral("toggleTranslation"))
        agent.translateToggle.onTrigger();
    else if (what == QStringLiteral("set"))
        test::assignSetting(m_world.settings, entry.text("property"), entry.value("value"));
    else if (what == QStringLiteral("world"))
        change(entry.object("change"));
    else if (what == QStringLiteral("permissionDismiss"))
        agent.hud.stateHolder().dismissPermission();
    else if (what == QStringLiteral("permissionOpenSettings"))
        agent.hud.stateHolder().openPermissionSettings();
    else
        throw BadRequest("unknown value of \"do\"");
}

void Scenario::change(const Request& fields) {
    if (fields.has("modelReady"))
        m_world.setModelReady(fields.truth("modelReady"));
    if (fields.has("microphone"))
        m_world.microphonePermission.current = fields.named("microphone", microphoneFromName);
    if (fields.has("accessibility")) {
        m_world.access.trusted = fields.truth("accessibility");
        m_world.keyboard.refusesTaps = !m_world.access.trusted;
    }
    if (fields.has("aiState"))
        m_world.languageModel.reason = reasonOf(fields.named("aiState", &fromRawValue<AIAvailabilityState>));
    if (fields.has("supportedLanguages")) {
        const auto codes = fields.texts("supportedLanguages");
        m_world.languageModel.languages = QSet<QString>(codes.begin(), codes.end());
    }
    if (fields.json().contains("ownBundleID"))
        m_world.workspace.ownIdentifier = fields.optionalText("ownBundleID");
    changeApplications(fields);
    if (fields.has("textField"))
        m_world.setTextFieldFocused(fields.truth("textField"));
    if (fields.has("activation"))
        changeActivation(fields.text("activation"));
    if (fields.has("recorder"))
        changeRecorder(fields.object("recorder"));
    if (fields.has("recognitions"))
        changeRecognitions(fields);
    if (fields.has("languageModel")) {
        std::vector<test::ModelAnswer> answers;
        for (const auto& entry : fields.objects("languageModel"))
            answers.push_back(modelAnswer(entry));
        m_world.languageModel.setAnswers(std::move(answers));
    }
    if (fields.json().contains("dominantLanguage"))
        m_world.languageRecognizer.answer = fields.optionalText("dominantLanguage");
    if (fields.has("onboarding") && m_world.hasAgent())
        changeOnboarding(fields.object("onboarding"));
}

/// The application in front runs, whatever the list says.
void Scenario::changeApplications(const Request& fields) {
    auto& workspace = m_world.workspace;
    const auto front = workspace.frontmostApplication();
    auto frontPid = front ? std::optional(front->pid) : std::nullopt;
    if (fields.has("frontmost")) {
        const auto described = fields.object("frontmost");
        frontPid = described.integer<pid_t>("pid");
        m_known[*frontPid] = {*frontPid, described.optionalText("bundleID"), described.optionalText("name")};
    } else if (fields.json().contains("frontmost")) {
        frontPid.reset();
    }
    if (fields.has("running")) {
        m_running.clear();
        for (const auto& pid : fields.array("running"))
            m_running.insert(Request::integerFrom<pid_t>(pid, "running"));
    }

    auto wanted = m_running;
    if (frontPid)
        wanted.insert(*frontPid);
    for (const auto pid : m_started) {
        if (!wanted.contains(pid))
            workspace.quit(pid);
    }
    for (const auto pid : wanted)
        workspace.run(m_known.try_emplace(pid, RunningApplication{pid, {}, {}}).first->second);
    workspace.setFrontmost(frontPid);
    m_started = std::move(wanted);
}

void Scenario::changeActivation(const QString& activation) {
    m_world.workspace.activation = Activation::Works;
    m_world.activationLosesTextField = false;
    if (activation == QStringLiteral("refused"))
        m_world.workspace.activation = Activation::Refused;
    else if (activation == QStringLiteral("noFocus"))
        m_world.workspace.activation = Activation::NoFocus;
    else if (activation == QStringLiteral("noTextField"))
        m_world.activationLosesTextField = true;
    else if (activation != QStringLiteral("works"))
        throw BadRequest("unknown value of \"activation\"");
}

void Scenario::changeRecorder(const Request& recorder) {
    if (recorder.has("audioSeconds"))
        m_world.microphone.secondsPerRecording = numberUpTo(recorder, "audioSeconds", longestRecording);
    if (recorder.has("startFails")) {
        m_world.microphone.startFailure.reset();
        if (recorder.truth("startFails"))
            m_world.microphone.startFailure.emplace(QStringLiteral("AudioEngine"), 2,
                                                    QStringLiteral("no input"));
    }
    if (recorder.has("stopFails"))
        m_world.recordingsFail = recorder.truth("stopFails");
}

void Scenario::changeRecognitions(const Request& fields) {
    std::vector<test::ToolRun> runs;
    for (const auto& entry : fields.objects("recognitions"))
        runs.push_back(toolRun(entry));
    if (runs.empty())
        throw BadRequest("\"recognitions\" must not be empty");
    m_world.tool.setRuns(std::move(runs));
}

void Scenario::changeOnboarding(const Request& flags) {
    auto& onboarding = m_world.agent().onboarding;
    if (flags.has("suspendHotkey"))
        onboarding.suspendHotkey.set(flags.truth("suspendHotkey"));
    if (flags.has("captureHotkey"))
        onboarding.captureHotkey.set(flags.truth("captureHotkey"));
}

Answer Scenario::effects() const {
    auto list = Answer::array();
    for (const auto& effect : m_world.effects) {
        Answer entry{{"at", effect.at}, {"effect", effect.effect}};
        entry.update(effect.fields);
        list.push_back(std::move(entry));
    }
    return list;
}

Answer Scenario::final() {
    auto& agent = m_world.agent();
    const auto& dictation = agent.delegate().dictation();
    const auto wavs = m_world.wavFiles(); // of the warm-up, too
    return {{"menu", rawValue(agent.menuBar.state.get()).toStdString()},
            {"hud", caseName(agent.hud.currentState()).toStdString()},
            {"wavExists", std::any_of(wavs.begin(), wavs.end(), test::isOfADictation)},
            {"chunkFiles", m_world.chunkFiles().size()},
            {"pendingRecordStart", dictation.hasPendingRecordStart()},
            {"currentWav", dictation.currentWav().has_value()}};
}

void addScenarioOperations(Driver& driver) {
    driver.add("scenario", [](const Request& request) {
        try {
            return Scenario(request).run();
        } catch (const std::invalid_argument& bad) {
            throw BadRequest(bad.what());
        }
    });
}

} // namespace talvera::conformance
