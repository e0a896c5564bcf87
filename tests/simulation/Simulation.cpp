// SPDX-License-Identifier: MIT
#include "Simulation.h"

#include "platform/PlatformError.h"

#include <algorithm>
#include <cerrno>
#include <limits>

namespace talvera::simulation {

using test::ToolRun;

namespace {

constexpr int roundsPerLife = 40;
constexpr int toolRunsPerRound = 24;
constexpr std::uint16_t capsLockKey = 57;
constexpr std::uint16_t controlKey = 59;
constexpr std::uint16_t optionKey = 58;

const RunningApplication editor{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
const RunningApplication mail{200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")};
const RunningApplication nameless{300, std::nullopt, std::nullopt};
const RunningApplication ourselves{400, QStringLiteral("talvera"), QStringLiteral("Talvera")};

} // namespace

Simulation::Simulation(std::uint64_t seed)
    : m_dice(seed)
    , m_judge(m_world) {}

void Simulation::run() {
    m_world.workspace.run(mail);
    m_world.workspace.run(nameless);
    m_world.workspace.run(ourselves);
    chooseSettings();
    m_world.launch();
    m_judge.watch();
    for (int round = 0; round < roundsPerLife && !violation(); ++round) {
        m_account.clear();
        m_world.effects.clear();
        playRound();
    }
}

QStringList Simulation::account() const {
    auto entries = m_account;
    for (const auto& effect : m_world.effects)
        entries.emplace_back(effect.at, effect.text());
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList lines;
    for (const auto& [at, what] : entries)
        lines << QStringLiteral("%1  %2").arg(at, 12, 'f', 6).arg(what);
    return lines;
}

void Simulation::chooseSettings() {
    auto& settings = m_world.settings;
    settings.hasOnboarded.set(m_dice.chance(0.9));
    settings.hotkeyBinding.set(randomBinding());
    settings.hotkeyTapToToggle.set(m_dice.chance(0.3));
    settings.targetLanguageCode.set(m_dice.pick<const char*>({"off", "off", "off", "en", "en", "de", "ja"}));
    settings.sourceLanguageCode.set(m_dice.pick<const char*>({"auto", "en", "en", "de", "ru"}));
    settings.insertionMode.set(
        m_dice.pick({InsertionMode::AutoByDuration, InsertionMode::AutoByDuration, InsertionMode::Paste}));
    settings.typewriterThresholdSeconds.set(m_dice.pick({15.0, 15.0, 1.0, 0.0}));
    settings.protectFocusTarget.set(m_dice.chance(0.8));
    settings.focusProtectionMode.set(
        m_dice.pick({FocusProtectionMode::Reactivate, FocusProtectionMode::ClipboardOnly}));
    settings.aiCleanupEnabled.set(m_dice.chance(0.3));
    settings.startSoundName.set(m_dice.pick<const char*>({"Submarine", "Off", "none of that name"}));
}

void Simulation::playRound() {
    chooseAudio();
    writeToolScript();
    for (auto faults = m_dice.pick({0, 0, 1, 1, 2}); faults > 0; --faults)
        breakSomething();
    if (m_world.settings.hotkeyTapToToggle.get())
        scheduleTaps();
    else
        scheduleHolds();
    scheduleDisturbances();
    m_world.actor.advance(seconds(12));
    mendEverything();
    bringToRest();
    m_judge.judgeRest();
}

/// Holds of every length, the next often before the one before has come to its end.
void Simulation::scheduleHolds() {
    double at = m_dice.between(0, 0.5);
    for (auto presses = m_dice.pick({1, 1, 1, 2, 3}); presses > 0; --presses) {
        const double held =
            m_dice.pick({0.05, 0.59, 0.6, 0.61, 0.7, 0.8, 1.5, 3.0}) + m_dice.between(0, 0.01);
        after(at, "press", [this] { keyDown(); });
        if (m_dice.chance(0.03))
            after(at + m_dice.between(0, held), "the press is heard twice", [this] {
                if (m_world.agent().hotkey.isPressed())
                    m_world.pressStart();
            });
        after(at + held, "release", [this] { keyUp(); });
        at += held + m_dice.pick({0.01, 0.1, 0.18, 0.5, 1.0, 4.0});
    }
}

void Simulation::scheduleTaps() {
    double at = m_dice.between(0, 0.5);
    for (auto taps = m_dice.pick({1, 2, 2, 2, 3, 4, 5}); taps > 0; --taps) {
        after(at, "press", [this] { keyDown(); });
        after(at + 0.03, "release", [this] { keyUp(); });
        at += m_dice.pick({0.05, 0.15, 0.19, 0.21, 0.5, 1.0, 2.0, 4.0}) + m_dice.between(0, 0.01);
    }
}

void Simulation::scheduleDisturbances() {
    for (auto count = m_dice.pick({0, 0, 1, 1, 2, 4}); count > 0; --count)
        after(m_dice.between(0, 6), "disturb", [this] { disturb(); });
}

void Simulation::chooseAudio() {
    m_world.microphone.secondsPerRecording = m_dice.chance(0.015)
                                                 ? m_dice.pick({28.0, 28.5, 40.0, 48.0, 48.5})
                                             : m_dice.chance(0.15) ? m_dice.pick({0.0, 0.1, 0.29, 0.3})
                                                                   : m_dice.between(0.31, 1.1);
}

/// Something that is broken for the whole round.
void Simulation::breakSomething() {
    switch (m_dice.below(11)) {
    case 0:
        did(QStringLiteral("the recorder refuses to start"));
        m_world.microphone.startFailure = PlatformError(QStringLiteral("AudioEngine"), 3);
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
        if (const auto path = m_world.agent().whisper.binaryPath(); m_world.disk.exists(path))
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
        m_world.workspace.setFrontmost(ourselves.pid);
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
    switch (m_dice.below(20)) {
    case 0:
    case 1:
    case 2:
        did(QStringLiteral("the user moves to another application"));
        m_world.workspace.setFrontmost(m_dice.pick({mail.pid, mail.pid, nameless.pid, ourselves.pid}));
        break;
    case 3:
        did(QStringLiteral("the user comes back"));
        m_world.workspace.runInFront(editor);
        break;
    case 4:
    case 5:
        did(QStringLiteral("the editor quits"));
        m_world.workspace.quit(editor.pid);
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
        m_world.accessibility.trusted = false;
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

HotkeyBinding Simulation::randomBinding() {
    using Key = HotkeyBinding::SpecialKey;
    switch (m_dice.below(8)) {
    case 0:
    case 1:
    case 2:
        return HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option, 49);
    case 3:
        return HotkeyBinding::holdSpecial(Key::RightOption);
    case 4:
        return HotkeyBinding::holdSpecial(Key::Fn);
    case 5:
        return HotkeyBinding::holdSpecial(Key::CapsLock);
    default:
        return HotkeyBinding::holdSpecial(Key::RightCommand);
    }
}

void Simulation::keyDown() {
    m_heldBinding = m_world.settings.hotkeyBinding.get();
    auto& keyboard = m_world.keyboard;
    if (const auto* chord = m_heldBinding->asChord()) {
        keyboard.press(controlKey);
        keyboard.press(optionKey);
        keyboard.press(chord->keyCode);
        if (m_dice.chance(0.2))
            keyboard.repeat(chord->keyCode);
        return;
    }
    const auto key = keyCode(*m_heldBinding->asSpecialKey());
    keyboard.press(key);
    if (key == capsLockKey)
        keyboard.release(key);
}

void Simulation::keyUp() {
    const auto held = std::exchange(m_heldBinding, std::nullopt);
    if (!held)
        return;
    auto& keyboard = m_world.keyboard;
    if (const auto* chord = held->asChord()) {
        const bool modifierFirst = m_dice.chance(0.3);
        if (modifierFirst)
            keyboard.release(controlKey);
        keyboard.release(chord->keyCode);
        keyboard.release(optionKey);
        if (!modifierFirst)
            keyboard.release(controlKey);
        return;
    }
    const auto key = keyCode(*held->asSpecialKey());
    if (key == capsLockKey)
        keyboard.press(key);
    keyboard.release(key);
}

/// The user's hands are off the keyboard, and Caps Lock is off.
void Simulation::letGo() {
    keyUp();
    if (m_world.agent().hotkey.isPressed())
        m_world.keyboard.tap(capsLockKey);
}

void Simulation::mendEverything() {
    did(QStringLiteral("everything is mended"));
    m_world.microphone.startFailure.reset();
    m_world.recordingsFail = false;
    m_world.disk.failWriteAfter(std::numeric_limits<int>::max(), ENOSPC);
    m_world.files.removalsFail = false;
    m_world.disk.addExecutable(m_world.agent().whisper.binaryPath());
    m_world.setModelReady(true);
    m_world.converters.refuses = false;
    m_world.workspace.activation = test::FakeWorkspace::Activation::Works;
    m_world.activationLosesTextField = false;
    m_world.workspace.runInFront(editor);
    m_world.setTextFieldFocused(true);
    m_world.microphonePermission.current = AuthorizationStatus::Authorized;
    m_world.accessibility.trusted = true;
    m_world.agent().readiness.refresh();
    m_world.agent().onboarding.suspendHotkey.set(false);
    m_world.agent().onboarding.captureHotkey.set(false);
    letGo();
}

void Simulation::bringToRest() {
    using State = MenuBarController::State;
    for (int attempts = 0; attempts < 3; ++attempts) {
        if (!m_world.runToRest()) {
            m_judge.complain(QStringLiteral("it never comes to rest"));
            return;
        }
        if (m_world.agent().menuBar.state.get() != State::Recording)
            break;
        // A press without a release that counted, as in tap mode: one more ends it.
        did(QStringLiteral("press and release to end the recording"));
        keyDown();
        m_world.actor.advance(seconds(0.4));
        keyUp();
        m_world.actor.settle();
        letGo();
    }
    m_judge.excuseReleases(false);
}

void Simulation::after(double delay, const char* what, std::function<void()> act) {
    m_world.actor.startTimer(seconds(delay), [this, what, act = std::move(act)] {
        did(QString::fromLatin1(what));
        act();
    });
}

void Simulation::did(const QString& what) {
    m_account.emplace_back(m_world.actor.elapsed(), QStringLiteral("-- ") + what);
}

} // namespace talvera::simulation
