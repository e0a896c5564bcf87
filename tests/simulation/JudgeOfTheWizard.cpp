// SPDX-License-Identifier: MIT
#include "Judge.h"

#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "models/ModelStore.h"
#include "shell/onboarding/OnboardingController.h"

// What must hold of the wizard and of the model that it fetches, at any moment between two turns.

namespace talvera::simulation {

void Judge::judgeWizard() {
    const auto& wizard = m_world->agent().onboarding;
    const bool isOpen = m_world->windows.wizard() != nullptr;
    const auto shows = [&](int step) { return isOpen && wizard.step.get() == step; };
    const bool hasHotkey = wizard.captureHotkey.get();
    if (hasHotkey && !shows(OnboardingController::DemoStep))
        complain(QStringLiteral("the wizard has the hotkey and doesn't show its demo"));
    if (!hasHotkey && shows(OnboardingController::DemoStep))
        complain(QStringLiteral("the wizard shows its demo without the hotkey"));
    if (wizard.suspendHotkey.get() && !shows(OnboardingController::HotkeyStep))
        complain(QStringLiteral("the hotkey stands still though no chord is being recorded"));
    if (wizard.isDemoRecording() && !hasHotkey)
        complain(QStringLiteral("the demo records and the wizard hasn't the hotkey"));
}

void Judge::judgeModel() {
    const auto path = m_world->agent().models.modelMainURL;
    if (m_world->disk.exists(path) && m_world->disk.read(path) != test::SimulatedMachine::wholeModel)
        complain(QStringLiteral("a half model stands in the place of a whole one"));
}

/// A press without a model opens the wizard.
void Judge::judgePressWithoutModel() {
    const auto pressed = m_world->agent().delegate().dictation().pressStartedAt();
    if (m_world->agent().models.isReady() || !pressed || m_modelGone >= *pressed)
        return; // one that goes during a press is missed by the recogniser
    complain(QStringLiteral("a recording began without a model"));
}

/// What has been fetched is in its place or gone, unless nothing can be deleted.
void Judge::judgeDownloads() {
    const auto downloads = m_world->agent().models.downloadsDir;
    for (const auto& path : m_world->disk.files()) {
        if (!path.startsWith(downloads + u'/'))
            continue;
        if (!m_faults.sinceRest(Fault::NothingDeleted))
            complain(QStringLiteral("a download has left a file: ") + path);
        m_world->disk.remove(path);
    }
}

} // namespace talvera::simulation
