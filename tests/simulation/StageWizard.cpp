// SPDX-License-Identifier: MIT
#include "Stage.h"

#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/OnboardingModel.h"
#include "shell/readiness/ReadinessMonitor.h"

// The user in the wizard, by its window, and the model that the wizard fetches.

namespace talvera::simulation {

using test::FakeReply;

void Stage::inWizard(const char* pattern, std::function<void(OnboardingModel&)> action) {
    meansForAgent(pattern, [this, action = std::move(action)](const auto&) {
        if (auto* window = m_world.windows.wizard())
            action(window->model());
    });
}

void Stage::learnTheWizard() {
    inWizard("the user goes on in the wizard", [](OnboardingModel& wizard) {
        wizard.hotkey()->recorder()->cancel(); // its field goes with the step
        wizard.pressPrimary();
    });
    inWizard("the user goes back in the wizard", [](OnboardingModel& wizard) {
        wizard.hotkey()->recorder()->cancel();
        wizard.back();
    });
    inWizard("the user skips the permissions", [](OnboardingModel& wizard) {
        if (wizard.asksToSkip())
            wizard.skipPermissions();
    });
    inWizard("the user begins to record a chord", [](OnboardingModel& wizard) {
        if (wizard.step() == OnboardingController::HotkeyStep)
            wizard.hotkey()->recorder()->record();
    });
    inWizard("the user gives the chord up",
             [](OnboardingModel& wizard) { wizard.hotkey()->recorder()->cancel(); });
    inWizard("the user wants the model again", [this](OnboardingModel& wizard) {
        if (wizard.step() != OnboardingController::DownloadStep)
            return;
        if (m_world.network.isBusy())
            m_faults->note(Fault::DownloadCancelled);
        wizard.download()->retry();
    });
    meansForAgent("the user closes the wizard", [this](const auto&) { closeWizard(); });
    meansForAgent("the permissions are looked at",
                  [this](const auto&) { m_world.agent().readiness.refresh(); });
    meansForAgent("everything works again", [this](const auto&) { makeEverythingWork(); });
}

void Stage::closeWizard() {
    auto* window = m_world.windows.wizard();
    if (!window)
        return;
    window->model().hotkey()->recorder()->cancel();
    if (const auto closed = window->onClosed)
        closed();
}

void Stage::learnTheDownload() {
    const auto serve = [this](const FakeReply& reply) {
        m_world.network.serve(m_world.modelSource.main.url, reply);
    };
    means("the model comes within ([0-9.]+) s", [serve](const auto& arguments) {
        serve({test::SimulatedMachine::wholeModel, seconds(arguments[0].toDouble())});
    });
    means("half of the model comes within ([0-9.]+) s, as if it were all", [serve](const auto& arguments) {
        const auto& whole = test::SimulatedMachine::wholeModel;
        serve({whole.left(whole.size() / 2), seconds(arguments[0].toDouble())});
    });
    means("the download breaks off after ([0-9.]+) s", [serve](const auto& arguments) {
        serve({{}, seconds(arguments[0].toDouble()), DownloadFailure::ConnectionLost});
    });
    means("there is (a|no) network", [this](const auto& arguments) {
        m_world.network.setOnline(arguments[0] == u"a");
        if (arguments[0] != u"a" && m_world.network.isBusy())
            m_faults->note(Fault::DownloadOffline);
    });
    m_world.network.onEnd = [this](const FakeReply& reply) {
        if (reply.failure)
            m_faults->note(Fault::DownloadBroken);
        else
            m_faults->note(reply.bytes == test::SimulatedMachine::wholeModel ? Fault::ModelCame
                                                                             : Fault::ModelCameInHalf);
    };
}

} // namespace talvera::simulation
