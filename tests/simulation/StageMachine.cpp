// SPDX-License-Identifier: MIT
#include "Stage.h"

#include "core/Agent.h"
#include "models/ModelStore.h"
#include "platform/system/PlatformError.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "speech/WhisperRunner.h"

#include <cerrno>
#include <limits>
#include <stdexcept>

// The machine below the desktop.

namespace talvera::simulation {

using test::ToolRun;

namespace {

AuthorizationStatus microphoneStatus(const QString& word) {
    if (word == QStringLiteral("allowed"))
        return AuthorizationStatus::Authorized;
    return word == QStringLiteral("forbidden") ? AuthorizationStatus::Denied
                                               : AuthorizationStatus::NotDetermined;
}

} // namespace

void Stage::learnTheMachine() {
    means("the microphone is (allowed|forbidden|unasked)", [this](const auto& arguments) {
        m_world.microphonePermission.current = microphoneStatus(arguments[0]);
        if (m_world.microphonePermission.current != AuthorizationStatus::Authorized)
            m_faults->note(Fault::PermissionTaken);
    });
    means("the desktop (lets|doesn't let) us watch keys", [this](const auto& arguments) {
        m_world.access.trusted = arguments[0] == u"lets";
        if (!m_world.access.trusted)
            m_faults->note(Fault::PermissionTaken);
    });
    means("the clock is set (forward|back) by ([0-9.]+) s", [this](const auto& arguments) {
        const bool isForward = arguments[0] == u"forward";
        const auto by = std::chrono::duration_cast<WallTime::duration>(seconds(arguments[1].toDouble()));
        m_faults->note(isForward ? Fault::ClockSetForward : Fault::ClockSetBack);
        auto& actor = m_world.actor;
        actor.setStartDate(isForward ? actor.startDate() + by : actor.startDate() - by);
    });
    means("statistics can't be written", [this](const auto&) { m_world.databases.insertFails = true; });
    means("preferences can't be written", [this](const auto&) {
        m_faults->note(Fault::PreferencesRefused);
        m_world.preferences.refuseSaves(true);
    });
}

void Stage::learnTheDisk() {
    means("the disk is full", [this](const auto&) { m_world.recordingsFail = true; });
    means("the disk refuses one write after ([0-9]+) more",
          [this](const auto& arguments) { m_world.disk.failWriteAfter(arguments[0].toInt(), ENOSPC); });
    means("nothing can be deleted", [this](const auto&) { m_world.files.removalsFail = true; });
    means("the model is (missing|there)",
          [this](const auto& arguments) { m_world.setModelReady(arguments[0] == u"there"); });
    means("the recogniser is gone", [this](const auto&) {
        m_faults->note(Fault::ToolGone);
        if (const auto path = m_world.agent().whisper.binaryURL(); m_world.disk.exists(path))
            m_world.disk.remove(path);
    });
    means("the model is replaced", [this](const auto&) {
        const auto path = m_world.agent().models.modelMainURL;
        if (!m_world.disk.exists(path))
            return;
        if (m_world.microphone.isRunning())
            m_faults->note(Fault::ModelReplaced);
        try {
            m_world.disk.write(path, test::SimulatedMachine::wholeModel);
        } catch (const PlatformError&) { // one write alone is refused, and it was to be one of ours
            m_world.disk.write(path, test::SimulatedMachine::wholeModel);
        }
    });
    means("the temporary directory is deleted", [this](const auto&) {
        m_faults->note(Fault::DirectoryGone);
        m_world.loseTemporaryDirectory();
    });
}

void Stage::learnTheSound() {
    means("the microphone is broken", [this](const auto&) {
        m_world.microphone.startFailure = PlatformError(QStringLiteral("AudioEngine"), 2);
    });
    means("the microphone hears ([0-9.]+) s",
          [this](const auto& arguments) { m_world.microphone.hear(arguments[0].toDouble()); });
    means("no converter for the microphone", [this](const auto&) { m_world.converters.refuses = true; });
    means("the microphone dies when it has heard ([0-9.]+) s", [this](const auto& arguments) {
        if (m_world.microphone.isRunning())
            m_faults->note(Fault::MicrophoneLost);
        m_world.microphone.loseAfter(arguments[0].toDouble());
    });
}

void Stage::learnTheRecogniser() {
    means("the recogniser that waits is killed", [this](const auto&) {
        if (m_world.tool.prepared() > 0 && m_world.tool.underWay().empty())
            m_faults->note(Fault::PreparedKilled);
        m_world.tool.killPrepared();
    });
    means("memory is short", [this](const auto&) {
        m_faults->note(Fault::MemoryShort);
        m_world.tool.freeMemory = 0;
    });
    means(
        "(first|then) it hears \"(.*)\"(?: within ([0-9.]+) s)?(?:, but leaves (an empty file|a cut file))?",
        [this](const auto& arguments) { recognise(toolRun(arguments), arguments[0] == u"first"); });
    means("(first|then) it (fails|crashes|hangs|ends without a text|leaves no text that can be read|"
          "can't be started)(?: within ([0-9.]+) s)?",
          [this](const auto& arguments) {
              ToolRun run;
              const auto& how = arguments[1];
              if (!arguments.value(2).isEmpty())
                  run.duration = seconds(arguments[2].toDouble());
              if (how == u"ends without a text") {
                  run.leavesNoFile = true;
              } else if (how == u"leaves no text that can be read") {
                  run.text = "\xC3\x28 no UTF-8";
              } else if (how == u"can't be started") {
                  run.launchFailure = PlatformError(QStringLiteral("ChildProcess"), ENOMEM);
              } else {
                  run.status = how == u"fails" ? 1 : how == u"hangs" ? 9 : 11;
                  run.standardError = "error: something is wrong\n";
                  run.signalled = run.status > 1;
                  run.hung = how == u"hangs";
              }
              recognise(std::move(run), arguments[0] == u"first");
          });
}

ToolRun Stage::toolRun(const QStringList& arguments) {
    ToolRun run;
    run.text = arguments[1].toUtf8();
    run.text.replace("\\n", "\n");
    if (!arguments.value(2).isEmpty())
        run.duration = seconds(arguments[2].toDouble());
    if (arguments.value(3) == u"an empty file")
        run.diskEndsAt = 0;
    else if (arguments.value(3) == u"a cut file")
        run.diskEndsAt = run.text.size() / 2;
    return run;
}

/// The next run of the recogniser; the last one repeats.
void Stage::recognise(ToolRun run, bool isFirst) {
    if (isFirst)
        m_runs.clear();
    m_runs.push_back(std::move(run));
    m_world.tool.setRuns(m_runs);
}

void Stage::makeEverythingWork() {
    m_world.keyboard.listenAgain();
    m_world.languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    m_world.microphone.startFailure.reset();
    m_world.recordingsFail = false;
    m_world.disk.failWriteAfter(std::numeric_limits<int>::max(), ENOSPC);
    m_world.files.removalsFail = false;
    m_world.disk.addExecutable(m_world.agent().whisper.binaryURL());
    m_world.setModelReady(true);
    m_world.tool.freeMemory = std::numeric_limits<qint64>::max();
    m_world.converters.refuses = false;
    m_world.databases.insertFails = false;
    m_world.preferences.refuseSaves(false);
    m_world.workspace.activation = test::FakeWorkspace::Activation::Works;
    m_world.activationLosesTextField = false;
    m_world.accessibilityTakes = {};
    m_world.desktop.setLocked(false);
    m_world.desktop.setSilent(false);
    m_world.desktop.setPopUp(false);
    m_world.workspace.runInFront(desktop::editor);
    m_world.desktop.goBackToFirstWindow();
    m_world.setTextFieldFocused(true);
    m_world.keys.canPost = nullptr;
    m_world.keys.reconnect();
    m_world.keys.takesPastes = true;
    m_world.keys.typesFaithfully = true;
    m_world.clipboard.accept();
    m_world.clipboard.beLeftAlone();
    m_world.microphonePermission.current = AuthorizationStatus::Authorized;
    m_world.access.trusted = true;
    m_world.agent().readiness.refresh();
    m_world.network.serve(m_world.modelSource.main.url, {test::SimulatedMachine::wholeModel});
    m_world.network.setOnline(true);
    closeWizard();
    if (auto* panel = m_world.windows.menuPanel(); panel && panel->isVisible())
        panel->onKeyDown(Qt::Key_Escape);
    letGo();
}

} // namespace talvera::simulation
