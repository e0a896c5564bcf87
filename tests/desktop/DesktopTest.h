// SPDX-License-Identifier: MIT
#pragma once

#include "AgentHome.h"
#include "AgentProcess.h"
#include "PrintQt.h"
#include "RigInput.h"
#include "Speech.h"
#include "Voice.h"
#include "keys.h"
#include "receivers/Receiver.h"

#include <QtGlobal>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace talvera::test {

using Samples = std::vector<std::int16_t>;

/// A test in which the user sits at the virtual desktop: they speak into its microphone and press keys on its
/// keyboard, and the agent types into real applications. The helpers throw std::runtime_error when what they
/// wait for doesn't happen, which ends the test.
///
///     startAgent();
///     Receiver editor(Receiver::Kind::Gtk);
///     holdAndSay(spoken("Good morning."));
///     EXPECT_TRUE(editor.waitForText("Good morning."));
///     agent->await("menu idle");
///
/// Afterwards the agent is ended, and checked to have left nothing behind.
class DesktopTest : public testing::Test {
protected:
    static constexpr XKeycode hotkey = Key::rightControl; ///< the hotkey as long as no other is set

    /// Ends the agent, if it still runs, and checks that it is clean.
    void TearDown() override;

    /// Starts the agent in `home` with these preferences beside those that skip the wizard.
    void startAgent(const QJsonObject& preferences = {}, const QString& program = TALVERA_PROGRAM);
    /// Starts it with what is in `home` already.
    void startAgentAgain(const QString& program = TALVERA_PROGRAM);

    /// Preferences with Ctrl+Alt+Space as the hotkey.
    static QJsonObject chordOfCtrlAltSpace();

    /// The keys that are the hotkey together, in the order in which they go down.
    std::vector<XKeycode> hotkeys{hotkey};
    void pressHotkey();
    void releaseHotkey();

    /// Holds the hotkey, says this as soon as it is being recorded, and lets go. Returns when the agent has
    /// begun to recognise.
    void holdAndSay(const Samples& speech);

    /// Asks until the answer is yes; false when it isn't in time. For what tells nobody when it happens.
    static bool eventually(const std::function<bool()>& condition);

    /// What the clipboard holds.
    static QString clipboard();
    /// Whether it comes to hold this text.
    static testing::AssertionResult clipboardBecomes(const QString& text);

    /// Whether, in a moment at most, the agent's directory for temporary files holds nothing of a dictation
    /// and no recogniser runs in this desktop, but one that warms up.
    static testing::AssertionResult isClean();
    /// The files there but those of the warm-up, and sockets, of all agents.
    static QStringList leftFiles();
    /// The processes of this name, at most 15 characters of it, that run in this desktop.
    static std::vector<pid_t> processes(const QByteArray& name);
    static std::vector<pid_t> recognisers() { return processes("whisper-cli"); }

    RigInput keys;
    AgentHome home;
    std::optional<AgentProcess> agent;
    Voice voice{qgetenv("PULSE_SERVER").toStdString(), "rigmic_feed", speechRate};

private:
    static constexpr int speechRate = 16000; ///< samples a second, as spoken() makes them
};

} // namespace talvera::test
