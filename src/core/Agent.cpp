// SPDX-License-Identifier: MIT
#include "core/Agent.h"

#include "core/AgentWiring.h"

namespace talvera {

Agent::Agent(const Machine& machine, AppSettings& settings, WindowFactory& windows)
    : m_wiring(std::make_unique<Wiring>(machine, settings, windows, onTrace))
    , models(m_wiring->models)
    , recorder(m_wiring->recorder)
    , whisper(m_wiring->whisper)
    , hud(m_wiring->hud)
    , menuBar(m_wiring->menuBar)
    , readiness(m_wiring->readiness)
    , focus(m_wiring->focus)
    , hotkey(m_wiring->hotkey)
    , translateToggle(m_wiring->translateToggle)
    , onboarding(m_wiring->onboarding) {}

Agent::~Agent() = default;

void Agent::launch() {
    recorder.setOnLost([wiring = m_wiring.get()] { wiring->tellOfLostMicrophone(); });
    delegate().applicationDidFinishLaunching();
    m_wiring->tellOfMissingFont();
}

void Agent::prepareWindows() {
    hud.preparePanel();
}

void Agent::stop() {
    m_wiring->control.reset();
    m_wiring->early.end();
    m_wiring->delegate.reset();
}

AppDelegate& Agent::delegate() {
    return *m_wiring->delegate;
}

void Agent::startedAgain(const LaunchRequest& request) {
    if (m_wiring->control)
        m_wiring->control->startedAgain(request);
}

void Agent::openSettings(std::optional<SettingsSectionID> section) {
    m_wiring->openSettings(section);
}

SettingsWindow& Agent::settingsWindow() {
    return m_wiring->settingsWindow;
}

QString Agent::obey(const AgentCommand& command, CommandedHotkey::Begun begun) {
    return m_wiring->control ? m_wiring->control->obey(command, begun) : QString();
}

std::shared_ptr<OutputPipeline> Agent::makePipeline() {
    return m_wiring->makePipeline();
}

MenuPanelModel* Agent::panelModel() {
    return m_wiring->panelModel ? &*m_wiring->panelModel : nullptr;
}

} // namespace talvera
