// SPDX-License-Identifier: MIT
#include "Simulation.h"
#include "hotkeys/HotkeyManager.h"
#include "shell/MenuBarController.h"

#include <algorithm>

namespace talvera::simulation {

namespace {

constexpr int roundsPerLife = 40;

} // namespace

Simulation::Simulation(std::uint64_t seed)
    : m_dice(seed)
    , m_judge(m_world) {}

void Simulation::run() {
    m_world.workspace.run(desktop::mail);
    m_world.workspace.run(desktop::nameless);
    m_world.workspace.run(desktop::ourselves);
    chooseSettings();
    m_world.launch();
    m_judge.watch();
    for (int round = 0; round < roundsPerLife && !violation(); ++round) {
        m_done.clear();
        m_world.effects.clear();
        playRound();
    }
}

QStringList Simulation::account() const {
    TwoColumns columns{m_done, {}};
    for (const auto& effect : m_world.effects)
        columns.followed.push_back({effect.at, effect.text()});
    return columns.rows();
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
    settings.cleanupTone.set(m_dice.pick({CleanupTone::Casual, CleanupTone::Professional, CleanupTone::Off}));
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

HotkeyBinding Simulation::randomBinding() {
    using Key = HotkeyBinding::SpecialKey;
    switch (m_dice.below(8)) {
    case 0:
    case 1:
    case 2:
        return HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option, VirtualKey::Space);
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
        keyboard.press(VirtualKey::Control);
        keyboard.press(VirtualKey::Option);
        keyboard.press(chord->keyCode);
        if (m_dice.chance(0.2))
            keyboard.repeat(chord->keyCode);
        return;
    }
    const auto key = keyCode(*m_heldBinding->asSpecialKey());
    keyboard.press(key);
    if (key == VirtualKey::CapsLock)
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
            keyboard.release(VirtualKey::Control);
        keyboard.release(chord->keyCode);
        keyboard.release(VirtualKey::Option);
        if (!modifierFirst)
            keyboard.release(VirtualKey::Control);
        return;
    }
    const auto key = keyCode(*held->asSpecialKey());
    if (key == VirtualKey::CapsLock)
        keyboard.press(key);
    keyboard.release(key);
}

/// The user's hands are off the keyboard, and Caps Lock is off.
void Simulation::letGo() {
    keyUp();
    if (m_world.agent().hotkey.isPressed())
        m_world.keyboard.tap(VirtualKey::CapsLock);
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
    m_done.push_back({m_world.actor.elapsed(), what});
}

} // namespace talvera::simulation
