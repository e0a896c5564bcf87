// SPDX-License-Identifier: MIT
#include "Stage.h"

#include "SettingsJson.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "shell/hud/DictationHUDController.h"

#include <exception>
#include <stdexcept>
#include <utility>

namespace talvera::simulation {

Stage::Stage(test::SimulatedWorld& world, FaultLog& faults)
    : m_world(world)
    , m_faults(&faults) {
    learnTheUser();
    learnTheHotkey();
    learnTheWizard();
    learnTheDownload();
    learnTheDesktop();
    learnTheFocus();
    learnTheWaysToText();
    learnTheMachine();
    learnTheDisk();
    learnTheSound();
    learnTheRecogniser();
    learnTheLanguageModel();
    watchRefusals();
    m_world.desktop.onFocus = [this](const test::SimulatedWindow& before) { noteFocus(before); };
    m_world.windows.onPanelShown = [this] { m_world.workspace.runInFront(desktop::ourselves); };
}

void Stage::means(const char* pattern, Action action) {
    const auto text = QString::fromUtf8(pattern);
    if (!text.contains(u'(')) {
        m_plain[text] = {{}, std::move(action)};
        return;
    }
    const auto first = text.startsWith(u'(') ? QString() : text.section(u' ', 0, 0);
    QRegularExpression whole(QRegularExpression::anchoredPattern(text));
    whole.optimize();
    m_byFirstWord[first].push_back({whole, std::move(action)});
}

void Stage::meansForAgent(const char* pattern, Action action) {
    means(pattern, [this, action = std::move(action)](const QStringList& arguments) {
        if (!m_world.hasAgent()) {
            action(arguments);
            return;
        }
        m_world.actor.post([this, &action, arguments] { run(action, QString(), arguments); });
    });
}

const Stage::Verb* Stage::verbFor(const QString& words) const {
    if (const auto plain = m_plain.constFind(words); plain != m_plain.constEnd())
        return &*plain;
    for (const auto& first : {words.section(u' ', 0, 0), QString()}) {
        const auto candidates = m_byFirstWord.constFind(first);
        if (candidates == m_byFirstWord.constEnd())
            continue;
        for (const auto& verb : *candidates) {
            if (verb.pattern.match(words).hasMatch())
                return &verb;
        }
    }
    return nullptr;
}

void Stage::perform(const QString& words) {
    if (onWords)
        onWords(words);
    const auto* verb = verbFor(words);
    if (!verb) {
        if (!m_mistake)
            m_mistake = words + QStringLiteral(": there is no such verb");
        return;
    }
    const bool isPlain = verb->pattern.pattern().isEmpty();
    run(verb->action, words, isPlain ? QStringList() : verb->pattern.match(words).capturedTexts().mid(1));
}

void Stage::run(const Action& action, const QString& words, const QStringList& arguments) {
    try {
        action(arguments);
    } catch (const std::exception& error) {
        if (!m_mistake)
            m_mistake = (words.isEmpty() ? arguments.join(u' ') : words) + QStringLiteral(": ") +
                        QString::fromUtf8(error.what());
    }
}

void Stage::learnTheUser() {
    meansForAgent("press", [this](const auto&) { m_world.pressStart(); });
    meansForAgent("release", [this](const auto&) { m_world.pressEnd(); });
    means("the user speaks for ([0-9.]+) s", [this](const auto& arguments) {
        m_world.microphone.secondsPerRecording = arguments[0].toDouble();
    });
    meansForAgent("set (\\w+) to (.+)", [this](const auto& arguments) {
        test::assignSetting(m_world.settings, arguments[0],
                            nlohmann::json::parse(arguments[1].toStdString()));
    });
    meansForAgent("translate key", [this](const auto&) { m_world.agent().translateToggle.onTrigger(); });
    meansForAgent("click the card away",
                  [this](const auto&) { m_world.agent().hud.stateHolder().dismissPermission(); });
    meansForAgent("click the card's button",
                  [this](const auto&) { m_world.agent().hud.stateHolder().openPermissionSettings(); });
    meansForAgent("the program is started again", [this](const auto&) { startAgain(); });
    meansForAgent("the panel is closed", [this](const auto&) {
        auto* panel = m_world.windows.menuPanel();
        if (panel && panel->isVisible() && panel->onKeyDown(Qt::Key_Escape))
            m_world.workspace.runInFront(desktop::editor);
    });
}

void Stage::startAgain() {
    m_faults->note(Fault::StartedAgain);
    m_world.agent().startedAgain();
    if (onSecondStart)
        onSecondStart();
}

void Stage::learnTheHotkey() {
    means("the hotkey goes down", [this](const auto&) { hotkeyDown(); });
    means("the hotkey repeats", [this](const auto&) {
        if (const auto* chord = m_heldBinding ? m_heldBinding->asChord() : nullptr)
            m_world.keyboard.repeat(chord->keyCode);
    });
    means("the hotkey comes up", [this](const auto&) { hotkeyUp(false); });
    means("the hotkey comes up behind its modifier", [this](const auto&) { hotkeyUp(true); });
    meansForAgent("the press is heard twice", [this](const auto&) {
        if (m_world.agent().hotkey.isPressed())
            m_world.pressStart();
    });
    means("keys are no longer heard", [this](const auto&) {
        m_faults->note(Fault::KeysNotHeard);
        m_world.keyboard.stopListening();
    });
    means("keys are heard again", [this](const auto&) { m_world.keyboard.listenAgain(); });
}

void Stage::hotkeyDown() {
    m_heldBinding = m_world.settings.hotkeyBinding.get();
    auto& keyboard = m_world.keyboard;
    if (const auto* chord = m_heldBinding->asChord()) {
        keyboard.press(VirtualKey::Control);
        keyboard.press(VirtualKey::Option);
        keyboard.press(chord->keyCode);
        return;
    }
    const auto key = keyCode(*m_heldBinding->asSpecialKey());
    keyboard.press(key);
    if (key == VirtualKey::CapsLock)
        keyboard.release(key);
}

void Stage::hotkeyUp(bool modifierFirst) {
    const auto held = std::exchange(m_heldBinding, std::nullopt);
    if (!held)
        return;
    auto& keyboard = m_world.keyboard;
    if (const auto* chord = held->asChord()) {
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
void Stage::letGo() {
    hotkeyUp(false);
    if (m_world.agent().hotkey.isPressed())
        m_world.keyboard.tap(VirtualKey::CapsLock);
}

} // namespace talvera::simulation
