// SPDX-License-Identifier: MIT
#include "Judge.h"

#include "SettingsJson.h"
#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "shell/hud/DictationHUDController.h"
#include "speech/AudioRecorder.h"

// What must hold when nothing is left to happen.

namespace talvera::simulation {

void Judge::judgeRest() {
    auto& agent = m_world->agent();
    if (m_menu != "idle")
        complain(QStringLiteral("at rest the menu is at ") + QString::fromStdString(m_menu));
    if (agent.delegate().dictation().hasPendingRecordStart())
        complain(QStringLiteral("at rest a press is still waiting"));
    if (agent.recorder.isRecording() || m_world->microphone.isRunning())
        complain(QStringLiteral("at rest the microphone is open"));
    if (m_world->actor.hasTimers())
        complain(QStringLiteral("at rest a timer is running"));
    if (m_world->tool.prepared() != 0)
        complain(QStringLiteral("at rest a run of the recogniser is prepared"));
    if (m_world->tool.mostPrepared() > 1)
        complain(QStringLiteral("two runs of the recogniser were prepared at once"));
    if (m_world->keys.keysDown() != 0 || m_world->keys.openSessions() != 0)
        complain(QStringLiteral("at rest a key is down"));
    if (m_noticeDue)
        complain(QStringLiteral("a failure was never told: ") + *m_noticeDue);
    if (m_microphoneLost)
        complain(QStringLiteral("the microphone has gone, and nobody was told"));
    if (const auto* panel = m_world->windows.menuPanel(); panel && panel->isVisible())
        complain(QStringLiteral("at rest the panel is open"));
    judgeHUDAtRest();
    judgeWizard();
    judgeModel();
    judgeDownloads();
    judgeFiles();
    m_texts.judgeRest();
    m_releasesExcused = m_launchFailuresExcused = false;
    m_faults.rest();
}

void Judge::judgeHUDAtRest() {
    const auto state = caseName(m_world->agent().hud.currentState()).toStdString();
    const auto* panel = m_world->windows.hudPanel();
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
    for (const auto& path : m_world->disk.files()) {
        const bool isInstalled = path.startsWith(m_world->directories.resources) ||
                                 path.startsWith(m_world->directories.applicationSupport);
        if (!isInstalled)
            left.insert(path);
    }
    if (m_faults.sinceRest(Fault::DirectoryGone))
        std::erase_if(m_expectedLeaks, [&](const QString& path) { return !left.contains(path); });
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
        m_world->disk.failRemovals(path, 0);
        m_world->disk.remove(path);
    }
}

void Judge::seeDeath() {
    m_texts.leave();
    m_world->files.onRead = nullptr;
    m_world->files.onRemovalFailed = nullptr;
    m_world->files.onRemoved = nullptr;
    m_world->files.onWriteFailed = nullptr;
    m_world->microphone.onLost = nullptr;
    m_menu = "idle";
    m_inFlight.reset();
    m_run.reset();
    m_ahead.clear();
    m_snapshots.clear();
    m_expectedLeaks.clear(); // the next start removes them
    m_noticeDue.reset();
    m_notice.reset();
    m_microphoneLost.reset();
    m_listeningMayStay = m_saveFailed = false;
    m_recordsDue = m_recordsWritten;
    m_modelGone = Instant::min();
}

/// What the user has set the next agent knows, if the disk has always taken it.
void Judge::seeReturn(test::SimulatedWorld& dead) {
    const bool wasSaved = !std::exchange(m_preferencesWereRefused, false);
    const auto before = test::settingsToJson(dead.settings);
    const auto after = test::settingsToJson(m_world->settings);
    if (wasSaved && after != before)
        complain(QStringLiteral("a killed agent has left other settings: ") +
                 QString::fromStdString(nlohmann::json::diff(before, after).dump()));
}

void Judge::seeSecondStart() {
    const auto* panel = m_world->windows.menuPanel();
    const auto& effects = m_world->effects;
    const bool showsWizard = !effects.empty() && effects.back().effect == "onboardingWindow" &&
                             effects.back().at == m_world->actor.elapsed();
    if (!showsWizard && !(panel && panel->isVisible()))
        complain(QStringLiteral("a second start shows neither panel nor wizard"));
}

} // namespace talvera::simulation
