// SPDX-License-Identifier: MIT
#include "Stage.h"

// The windows, and the ways in which a text gets into them.

namespace talvera::simulation {

using test::FakeWorkspace;
using test::SimulatedWindow;

void Stage::learnTheDesktop() {
    means("focus on the editor", [this](const auto&) { m_world.workspace.runInFront(desktop::editor); });
    means("focus on the mail", [this](const auto&) { m_world.workspace.runInFront(desktop::mail); });
    means("focus on the nameless program",
          [this](const auto&) { m_world.workspace.runInFront(desktop::nameless); });
    means("focus on our own window",
          [this](const auto&) { m_world.workspace.runInFront(desktop::ourselves); });
    means("focus on nothing", [this](const auto&) { m_world.workspace.setFrontmost(std::nullopt); });
    means("the editor quits", [this](const auto&) {
        m_isClosing = true;
        m_world.workspace.quit(desktop::editor.pid);
        m_isClosing = false;
    });
    means("no application can be brought to the front", [this](const auto&) {
        m_faults->note(Fault::ApplicationNotBroughtBack);
        m_world.workspace.activation = FakeWorkspace::Activation::Refused;
    });
    means("applications come to the front without the focus", [this](const auto&) {
        m_faults->note(Fault::ApplicationNotBroughtBack);
        m_world.workspace.activation = FakeWorkspace::Activation::NoFocus;
    });
    means("applications come to the front without a text field",
          [this](const auto&) { m_world.activationLosesTextField = true; });
}

void Stage::learnTheFocus() {
    means("no text field", [this](const auto&) { m_world.setTextFieldFocused(false); });
    means("a text field", [this](const auto&) { m_world.setTextFieldFocused(true); });
    means("another window of the program opens", [this](const auto&) { m_world.desktop.openWindow(); });
    means("the program's first window comes back",
          [this](const auto&) { m_world.desktop.goBackToFirstWindow(); });
    means("a list of completions opens", [this](const auto&) {
        if (isTyping())
            m_faults->note(Fault::PopUpWhileTyping);
        m_world.desktop.setPopUp(true);
    });
    means("the list of completions goes", [this](const auto&) { m_world.desktop.setPopUp(false); });
    means("the screen is locked", [this](const auto&) { m_world.desktop.setLocked(true); });
    means("the screen is unlocked", [this](const auto&) { m_world.desktop.setLocked(false); });
    means("applications take ([0-9.]+) s to say what has the focus", [this](const auto& arguments) {
        m_faults->note(Fault::AccessibilitySlow);
        m_world.accessibilityTakes = seconds(arguments[0].toDouble());
    });
    means("applications don't say what has the focus", [this](const auto&) {
        m_faults->note(Fault::AccessibilitySilent);
        m_world.desktop.setSilent(true);
    });
}

/// The keyboard goes elsewhere, perhaps in the middle of something.
void Stage::noteFocus(const SimulatedWindow& before) {
    const auto& now = m_world.desktop.focused();
    if (before.name == now.name)
        return;
    if (m_world.actor.isHeld() && !m_world.workspace.isActivating())
        m_faults->note(Fault::FocusMovedWhileHeld);
    if (!isTyping())
        return;
    if (now.name == test::SimulatedDesktop::locker)
        m_faults->note(Fault::LockedWhileTyping);
    else if (m_isClosing)
        m_faults->note(Fault::WindowClosedWhileTyping);
    else if (before.pid == now.pid)
        m_faults->note(Fault::OtherWindowWhileTyping);
    else
        m_faults->note(Fault::FocusMovedWhileTyping);
}

void Stage::learnTheWaysToText() {
    means("no key can be typed",
          [this](const auto&) { m_world.keys.canPost = [](const test::PostedKeyEvent&) { return false; }; });
    means("no key types an? (.)", [this](const auto& arguments) {
        m_world.keys.canPost = [letter = arguments[0]](const test::PostedKeyEvent& event) {
            return !event.chunk.contains(letter);
        };
    });
    means("the way to the keyboard is cut off", [this](const auto&) { m_world.keys.cutOff(); });
    means("the clipboard takes no text", [this](const auto&) { m_world.clipboard.refuse(); });
    means("another program takes the clipboard at once",
          [this](const auto&) { m_world.clipboard.beTakenBy(QStringLiteral("another program's")); });
    means("windows ignore what is pasted", [this](const auto&) { m_world.keys.takesPastes = false; });
    means("an input method changes what is typed",
          [this](const auto&) { m_world.keys.typesFaithfully = false; });
}

void Stage::watchRefusals() {
    m_world.keys.onRefused = [this](PostResult why) {
        if (why == PostResult::CutOff)
            m_faults->note(Fault::KeyboardCutOff);
        else if (why == PostResult::NotMakeable)
            m_faults->note(Fault::KeysRefused);
    };
    m_world.keys.onPost = [this](const test::PostedKeyEvent& event) {
        if (event.kind == test::PostedKeyEvent::Kind::PasteChord && !m_world.keys.takesPastes)
            m_faults->note(Fault::PasteIgnored);
    };
    m_world.clipboard.onRefused = [this] {
        m_faults->note(Fault::ClipboardRefused);
        if (m_faults->sinceRest(Fault::KeysRefused) || m_faults->sinceRest(Fault::KeyboardCutOff))
            m_faults->note(Fault::KeysAndClipboardRefused);
    };
    m_world.clipboard.onTaken = [this] { m_faults->note(Fault::ClipboardTaken); };
    m_world.databases.onInsertRefused = [this] { m_faults->note(Fault::StatisticsRefused); };
}

} // namespace talvera::simulation
