// SPDX-License-Identifier: MIT
#include "Judge.h"
#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "shell/hud/DictationHUDController.h"
#include "speech/AudioRecorder.h"

// What must hold when nothing is left to happen.

namespace talvera::simulation {

void Judge::judgeRest() {
    auto& agent = m_world.agent();
    if (m_menu != "idle")
        complain(QStringLiteral("at rest the menu is at ") + QString::fromStdString(m_menu));
    if (m_inFlight)
        complain(QStringLiteral("at rest a dictation is still in flight"));
    if (agent.delegate().dictation().hasPendingRecordStart())
        complain(QStringLiteral("at rest a press is still waiting"));
    if (agent.recorder.isRecording() || m_world.microphone.isRunning())
        complain(QStringLiteral("at rest the microphone is open"));
    if (m_world.actor.hasTimers())
        complain(QStringLiteral("at rest a timer is running"));
    if (m_world.keys.keysDown() != 0 || m_world.keys.openSessions() != 0)
        complain(QStringLiteral("at rest a key is down"));
    if (m_noticeDue)
        complain(QStringLiteral("a failure was never told: ") + *m_noticeDue);
    judgeHUDAtRest();
    judgeFiles();
    judgeDeliveries();
}

void Judge::judgeHUDAtRest() {
    const auto state = caseName(m_world.agent().hud.currentState()).toStdString();
    const auto* panel = m_world.windows.hudPanel();
    const bool visible = panel && panel->isVisible();
    if (!isOneOf(state, {"hidden", "listening", "permissionRequired"}) ||
        (state == "listening" && !m_listeningMayStay))
        complain(QStringLiteral("at rest the HUD is at ") + QString::fromStdString(state));
    // Nothing is recorded at rest, so that a HUD that listens has left the screen.
    if (visible != (state == "permissionRequired"))
        complain(visible ? QStringLiteral("at rest an empty HUD is shown")
                         : QStringLiteral("at rest the HUD is not shown"));
}

/// Nothing is left but what is known to be left, and all of that.
void Judge::judgeFiles() {
    std::set<QString> left;
    for (const auto& path : m_world.disk.files()) {
        if (path.startsWith(m_world.directories.temporary))
            left.insert(path);
    }
    for (const auto& path : left) {
        if (!m_expectedLeaks.contains(path))
            complain(QStringLiteral("a file was left: ") + path);
    }
    for (const auto& path : m_expectedLeaks) {
        if (!left.contains(path))
            complain(QStringLiteral("a file is gone that should have been left: ") + path);
    }
    m_tally.acceptedLeaks += m_expectedLeaks.size();
    m_expectedLeaks.clear();
    for (const auto& path : left) {
        m_world.disk.failRemovals(path, 0);
        m_world.disk.remove(path);
    }
}

void Judge::judgeDeliveries() {
    std::size_t next = 0;
    for (const auto& effect : m_world.effects) {
        if (!isOneOf(effect.effect, {"type", "paste", "clipboard"}))
            continue;
        const auto text = QString::fromStdString(effect.fields["text"].get<std::string>());
        if (next == m_expectedDeliveries.size()) {
            complain(QStringLiteral("delivered without a reason: ") + effect.text());
            break;
        }
        const auto& expected = m_expectedDeliveries[next++];
        if (effect.effect != expected.effect || text != expected.text)
            complain(QStringLiteral("delivered \"%1\" instead of \"%2 %3\"")
                         .arg(effect.text(), QString::fromStdString(expected.effect), expected.text));
        if (effect.effect != "clipboard")
            m_textReceived += text;
    }
    if (next < m_expectedDeliveries.size())
        complain(QStringLiteral("never delivered: ") + m_expectedDeliveries[next].text);
    if (m_world.keys.text() != m_textReceived)
        complain(QStringLiteral("the application got something else than what was delivered"));
    m_expectedDeliveries.clear();
}

} // namespace talvera::simulation
