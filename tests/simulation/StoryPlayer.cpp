// SPDX-License-Identifier: MIT
#include "StoryPlayer.h"

#include "SettingsJson.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "shell/hud/DictationHUDController.h"

#include <algorithm>
#include <stdexcept>

namespace talvera::simulation {

using test::FakeWorkspace;
using test::ToolRun;

namespace {

constexpr double afterwards = 60; // seconds

const RunningApplication editor{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
const RunningApplication mail{200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")};
const RunningApplication ourselves{400, QStringLiteral("talvera"), QStringLiteral("Talvera")};

AuthorizationStatus microphoneStatus(const QString& word) {
    if (word == QStringLiteral("allowed"))
        return AuthorizationStatus::Authorized;
    return word == QStringLiteral("forbidden") ? AuthorizationStatus::Denied
                                               : AuthorizationStatus::NotDetermined;
}

} // namespace

StoryPlayer::StoryPlayer() {
    m_world.settings.hasOnboarded.set(true);
    learnTheUser();
    learnTheDesktop();
    learnTheMachine();
    learnTheRecogniser();
}

std::vector<TwoColumns::Entry> StoryPlayer::play(const Story& story) {
    for (const auto& words : story.given)
        perform(words);
    m_world.launch();
    double end = 0;
    for (const auto& [at, words] : story.columns.done) {
        m_world.actor.startTimer(seconds(at), [this, words = words] { perform(words); });
        end = std::max(end, at);
    }
    m_world.actor.advance(seconds(end + afterwards));
    if (m_mistake)
        throw std::invalid_argument(m_mistake->toStdString());

    std::vector<TwoColumns::Entry> followed;
    for (const auto& effect : m_world.effects) {
        if (effect.isTold())
            followed.push_back({effect.at, effect.text()});
    }
    for (const auto& path : m_world.wavFiles() + m_world.chunkFiles())
        followed.push_back({m_world.actor.elapsed(), QStringLiteral("left behind: ") + path});
    return followed;
}

void StoryPlayer::means(const char* pattern, Action action) {
    const auto whole = QRegularExpression::anchoredPattern(QString::fromUtf8(pattern));
    m_verbs.push_back({QRegularExpression(whole), std::move(action)});
}

void StoryPlayer::perform(const QString& words) {
    const auto canPerform = [&words](const Verb& verb) { return verb.pattern.match(words).hasMatch(); };
    const auto verb = std::find_if(m_verbs.begin(), m_verbs.end(), canPerform);
    try {
        if (verb == m_verbs.end())
            throw std::invalid_argument("there is no such verb");
        verb->action(verb->pattern.match(words).capturedTexts().mid(1));
    } catch (const std::exception& error) {
        if (!m_mistake)
            m_mistake = words + QStringLiteral(": ") + QString::fromUtf8(error.what());
    }
}

void StoryPlayer::learnTheUser() {
    means("press", [this](const auto&) { m_world.pressStart(); });
    means("release", [this](const auto&) { m_world.pressEnd(); });
    means("the user speaks for ([0-9.]+) s", [this](const auto& arguments) {
        m_world.microphone.secondsPerRecording = arguments[0].toDouble();
    });
    means("set (\\w+) to (.+)", [this](const auto& arguments) {
        test::assignSetting(m_world.settings, arguments[0],
                            nlohmann::json::parse(arguments[1].toStdString()));
    });
    means("translate key", [this](const auto&) { m_world.agent().translateToggle.onTrigger(); });
    means("click the card away",
          [this](const auto&) { m_world.agent().hud.stateHolder().dismissPermission(); });
    means("click the card's button",
          [this](const auto&) { m_world.agent().hud.stateHolder().openPermissionSettings(); });
}

void StoryPlayer::learnTheDesktop() {
    means("focus on the editor", [this](const auto&) { m_world.workspace.runInFront(editor); });
    means("focus on the mail", [this](const auto&) { m_world.workspace.runInFront(mail); });
    means("focus on our own window", [this](const auto&) { m_world.workspace.runInFront(ourselves); });
    means("focus on nothing", [this](const auto&) { m_world.workspace.setFrontmost(std::nullopt); });
    means("no text field", [this](const auto&) { m_world.setTextFieldFocused(false); });
    means("a text field", [this](const auto&) { m_world.setTextFieldFocused(true); });
    means("the editor quits", [this](const auto&) { m_world.workspace.quit(editor.pid); });
    means("no application can be brought to the front",
          [this](const auto&) { m_world.workspace.activation = FakeWorkspace::Activation::Refused; });
    means("applications come to the front without a text field",
          [this](const auto&) { m_world.activationLosesTextField = true; });
}

void StoryPlayer::learnTheMachine() {
    means("the microphone is (allowed|forbidden|unasked)", [this](const auto& arguments) {
        m_world.microphonePermission.current = microphoneStatus(arguments[0]);
    });
    means("the microphone is broken", [this](const auto&) {
        m_world.microphone.startFailure = PlatformError(QStringLiteral("AudioEngine"), 2);
    });
    means("the desktop (lets|doesn't let) us watch keys",
          [this](const auto& arguments) { m_world.access.trusted = arguments[0] == u"lets"; });
    means("the disk is full", [this](const auto&) { m_world.recordingsFail = true; });
    means("the model is (missing|there)",
          [this](const auto& arguments) { m_world.setModelReady(arguments[0] == u"there"); });
}

void StoryPlayer::learnTheRecogniser() {
    means("(first|then) it hears \"(.*)\" within ([0-9.]+) s", [this](const auto& arguments) {
        ToolRun run;
        run.text = arguments[1].toUtf8();
        run.duration = seconds(arguments[2].toDouble());
        recognise(run, arguments[0] == u"first");
    });
    means("(first|then) it hears \"(.*)\"", [this](const auto& arguments) {
        ToolRun run;
        run.text = arguments[1].toUtf8();
        recognise(run, arguments[0] == u"first");
    });
    means("(first|then) it fails", [this](const auto& arguments) {
        ToolRun run;
        run.status = 1;
        recognise(run, arguments[0] == u"first");
    });
    means("(first|then) it ends without a text", [this](const auto& arguments) {
        ToolRun run;
        run.leavesNoFile = true;
        recognise(run, arguments[0] == u"first");
    });
}

/// The next run of the recogniser; the last one repeats.
void StoryPlayer::recognise(ToolRun run, bool isFirst) {
    if (isFirst)
        m_runs.clear();
    m_runs.push_back(std::move(run));
    m_world.tool.setRuns(m_runs);
}

} // namespace talvera::simulation
