// SPDX-License-Identifier: MIT
#include "Simulation.h"

#include "hotkeys/TranslateToggleHotkey.h"
#include "platform/system/PlatformError.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "speech/WhisperRunner.h"

#include <cerrno>
#include <limits>

// What goes wrong around the agent, and what else happens to it.

namespace talvera::simulation {

using test::ToolRun;

namespace {

constexpr int toolRunsPerRound = 24;

} // namespace

void Simulation::chooseAudio() {
    m_world.microphone.secondsPerRecording = m_dice.chance(0.015)
                                                 ? m_dice.pick({28.0, 28.5, 40.0, 48.0, 48.5})
                                             : m_dice.chance(0.15) ? m_dice.pick({0.0, 0.1, 0.29, 0.3})
                                                                   : m_dice.between(0.31, 1.1);
}

/// Something that is broken for the whole round.
void Simulation::breakSomething() {
    switch (m_dice.below(12)) {
    case 0:
        did(QStringLiteral("the recorder refuses to start"));
        m_world.microphone.startFailure = PlatformError(AudioEngineFailure::Refused);
        break;
    case 1:
        did(QStringLiteral("recordings can't be saved"));
        m_world.recordingsFail = true;
        break;
    case 2: {
        const auto writes = static_cast<int>(m_dice.below(4));
        did(QStringLiteral("a write fails after %1 others").arg(writes));
        m_world.disk.failWriteAfter(writes, ENOSPC);
        break;
    }
    case 3:
        did(QStringLiteral("nothing can be deleted"));
        m_world.files.removalsFail = true;
        break;
    case 4:
        did(QStringLiteral("the recogniser is gone"));
        if (const auto path = m_world.agent().whisper.binaryURL(); m_world.disk.exists(path))
            m_world.disk.remove(path);
        break;
    case 5:
        did(QStringLiteral("applications don't come to the front"));
        m_world.workspace.activation =
            m_dice.pick({test::FakeWorkspace::Activation::Refused, test::FakeWorkspace::Activation::NoFocus});
        break;
    case 6:
        did(QStringLiteral("no text field"));
        m_world.setTextFieldFocused(false);
        break;
    case 7:
        did(QStringLiteral("applications come to the front without a text field"));
        m_world.activationLosesTextField = true;
        break;
    case 8:
        did(QStringLiteral("no application in front"));
        m_world.workspace.setFrontmost(std::nullopt);
        break;
    case 9:
        did(QStringLiteral("our own window in front"));
        m_world.workspace.setFrontmost(desktop::ourselves.pid);
        break;
    case 10:
        did(QStringLiteral("a language model, so that clean-up can be asked for"));
        m_world.languageModel.reason.reset();
        m_world.languageRecognizer.answer =
            m_dice.chance(0.3) ? std::nullopt
                               : std::optional(QString(m_dice.pick<const char*>({"en", "de"})));
        break;
    default:
        did(QStringLiteral("no converter for the microphone"));
        m_world.converters.refuses = true;
        break;
    }
}

/// Something that happens in the middle of it all.
void Simulation::disturb() {
    auto& settings = m_world.settings;
    auto& agent = m_world.agent();
    switch (m_dice.below(21)) {
    case 0:
    case 1:
    case 2:
        did(QStringLiteral("the user moves to another application"));
        m_world.workspace.setFrontmost(m_dice.pick(
            {desktop::mail.pid, desktop::mail.pid, desktop::nameless.pid, desktop::ourselves.pid}));
        break;
    case 3:
        did(QStringLiteral("the user comes back"));
        m_world.workspace.runInFront(desktop::editor);
        break;
    case 4:
    case 5:
        did(QStringLiteral("the editor quits"));
        m_world.workspace.quit(desktop::editor.pid);
        break;
    case 6:
        did(QStringLiteral("the text field comes or goes"));
        m_world.setTextFieldFocused(!m_world.isTextFieldFocused());
        break;
    case 7:
        did(QStringLiteral("the languages change"));
        settings.targetLanguageCode.set(m_dice.pick<const char*>({"off", "en", "de"}));
        settings.sourceLanguageCode.set(m_dice.pick<const char*>({"auto", "en", "de"}));
        break;
    case 8:
        did(QStringLiteral("the delivery changes"));
        settings.insertionMode.set(m_dice.pick({InsertionMode::AutoByDuration, InsertionMode::Paste}));
        settings.typewriterThresholdSeconds.set(m_dice.pick({15.0, 0.5}));
        settings.protectFocusTarget.set(m_dice.chance(0.5));
        settings.focusProtectionMode.set(
            m_dice.pick({FocusProtectionMode::Reactivate, FocusProtectionMode::ClipboardOnly}));
        break;
    case 9:
        did(QStringLiteral("hold and tap mode are swapped"));
        settings.hotkeyTapToToggle.set(!settings.hotkeyTapToToggle.get());
        m_judge.excuseReleases(true);
        break;
    case 10:
        did(QStringLiteral("another hotkey"));
        settings.hotkeyBinding.set(randomBinding());
        break;
    case 11:
        did(QStringLiteral("the microphone is taken away"));
        m_world.microphonePermission.current = AuthorizationStatus::Denied;
        break;
    case 12:
        did(QStringLiteral("Accessibility is taken away"));
        m_world.access.trusted = false;
        break;
    case 13:
        did(QStringLiteral("the permissions are looked at"));
        agent.readiness.refresh();
        break;
    case 14:
        did(QStringLiteral("the model vanishes"));
        m_world.setModelReady(false);
        break;
    case 15:
        did(QStringLiteral("the wizard suspends the hotkey"));
        agent.onboarding.suspendHotkey.set(true);
        m_judge.excuseReleases(true);
        break;
    case 16:
        did(QStringLiteral("the wizard takes the hotkey"));
        agent.onboarding.captureHotkey.set(true);
        m_judge.excuseReleases(true);
        break;
    case 17:
        did(QStringLiteral("the wizard lets go of the hotkey"));
        agent.onboarding.suspendHotkey.set(false);
        agent.onboarding.captureHotkey.set(false);
        break;
    case 18:
        did(QStringLiteral("the user clicks the card"));
        if (m_dice.chance(0.5))
            agent.hud.stateHolder().dismissPermission();
        else
            agent.hud.stateHolder().openPermissionSettings();
        break;
    case 19:
        did(QStringLiteral("the program stops listening to the keyboard"));
        m_world.keyboard.stopListening();
        after(m_dice.between(0.1, 2), "the program listens again",
              [this] { m_world.keyboard.listenAgain(); });
        break;
    default:
        did(QStringLiteral("the translate hotkey"));
        agent.translateToggle.onTrigger();
        break;
    }
}

void Simulation::writeToolScript() {
    std::vector<ToolRun> runs;
    runs.reserve(toolRunsPerRound);
    bool mayNotStart = false;
    for (int i = 0; i < toolRunsPerRound; ++i) {
        runs.push_back(makeToolRun());
        mayNotStart = mayNotStart || runs.back().launchFailure;
    }
    m_world.tool.setRuns(std::move(runs));
    m_judge.excuseLaunchFailures(mayNotStart);
}

ToolRun Simulation::makeToolRun() {
    ToolRun run;
    run.duration = seconds(m_dice.pick({0.0, 0.1, 0.3, 0.3, 1.0, 3.0}) + m_dice.between(0, 0.01));
    // Words that no other run has, so that nothing seems to overlap.
    ++m_texts;
    run.text =
        QByteArray("word") + QByteArray::number(m_texts) + "a word" + QByteArray::number(m_texts) + "b";
    if (!m_dice.chance(0.2))
        return run;
    switch (m_dice.below(7)) {
    case 0:
        run.status = 1;
        run.standardError = "error: something is wrong\n";
        break;
    case 1:
        run.status = 11;
        run.signalled = true;
        break;
    case 2:
        run.status = 9;
        run.signalled = run.hung = true;
        run.duration = seconds(60);
        break;
    case 3:
        run.leavesNoFile = true;
        break;
    case 4:
        run.text = "\xC3\x28 no UTF-8";
        break;
    case 5:
        run.text = m_dice.pick<const char*>({"", " \n", "\n\n"});
        break;
    default:
        if (m_dice.chance(0.2))
            run.launchFailure = PlatformError(QStringLiteral("ChildProcess"), ENOMEM);
        break;
    }
    return run;
}

void Simulation::mendEverything() {
    did(QStringLiteral("everything is mended"));
    m_world.keyboard.listenAgain();
    m_world.languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    m_world.microphone.startFailure.reset();
    m_world.recordingsFail = false;
    m_world.disk.failWriteAfter(std::numeric_limits<int>::max(), ENOSPC);
    m_world.files.removalsFail = false;
    m_world.disk.addExecutable(m_world.agent().whisper.binaryURL());
    m_world.setModelReady(true);
    m_world.converters.refuses = false;
    m_world.workspace.activation = test::FakeWorkspace::Activation::Works;
    m_world.activationLosesTextField = false;
    m_world.workspace.runInFront(desktop::editor);
    m_world.setTextFieldFocused(true);
    m_world.microphonePermission.current = AuthorizationStatus::Authorized;
    m_world.access.trusted = true;
    m_world.agent().readiness.refresh();
    m_world.agent().onboarding.suspendHotkey.set(false);
    m_world.agent().onboarding.captureHotkey.set(false);
    letGo();
}

} // namespace talvera::simulation
