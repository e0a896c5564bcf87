// SPDX-License-Identifier: MIT
#include "Play.h"

#include "core/Agent.h"
#include "shell/MenuBarController.h"

#include <algorithm>
#include <utility>

namespace talvera::simulation {

using test::SimulatedWorld;

Play::Play(FaultLog& faults)
    : m_faults(faults)
    , m_world(std::make_unique<SimulatedWorld>()) {
    m_stage = std::make_unique<Stage>(*m_world, faults);
    m_world->settings.hasOnboarded.set(true);
    for (const auto& application : {desktop::mail, desktop::nameless, desktop::ourselves})
        m_world->workspace.run(application);
}

void Play::launch() {
    m_world->launch();
    if (onLaunch)
        onLaunch(*m_world);
}

void Play::perform(std::vector<TwoColumns::Entry> things, double end) {
    const auto earlier = [](const auto& a, const auto& b) { return a.at < b.at; };
    std::stable_sort(things.begin(), things.end(), earlier);
    const auto kill = QStringLiteral("the program is killed and started again");
    for (auto next = things.begin(); next != things.end();) {
        const auto death =
            std::find_if(next, things.end(), [&](const auto& thing) { return thing.words == kill; });
        for (; next != death; ++next) {
            m_world->actor.startOutside(seconds(next->at - elapsed()),
                                        [this, words = next->words] { m_stage->perform(words); });
        }
        if (death == things.end())
            break;
        m_world->actor.runUntil(Instant{} + seconds(death->at));
        this->kill();
        ++next;
    }
    m_world->actor.runUntil(Instant{} + seconds(end));
}

void Play::kill() {
    noteDeath();
    if (onDeath)
        onDeath();
    m_world->onEffect = nullptr; // whatever it still does, it does to nobody
    m_stage->retire();
    m_ofTheDead.insert(m_ofTheDead.end(), m_world->effects.begin(), m_world->effects.end());
    m_mistake = mistake();
    auto next = std::make_unique<SimulatedWorld>(SimulatedWorld::AfterDeath{}, *m_world);
    auto stage = std::make_unique<Stage>(*next, m_faults);
    stage->goOnAfter(*m_stage);
    const auto deadStage = std::exchange(m_stage, std::move(stage));
    const auto dead = std::exchange(m_world, std::move(next));
    launch();
    if (onReturn)
        onReturn(*dead);
}

void Play::noteDeath() {
    using State = MenuBarController::State;
    if (m_world->network.isBusy())
        m_faults.note(Fault::KilledDownloading);
    switch (m_world->agent().menuBar.state.get()) {
    case State::Recording:
        m_faults.note(Fault::KilledRecording);
        return;
    case State::Transcribing:
        m_faults.note(Fault::KilledRecognising);
        return;
    case State::Idle:
    case State::Error:
        m_faults.note(m_world->keys.openSessions() > 0 ? Fault::KilledTyping : Fault::KilledIdle);
        return;
    }
}

std::optional<QString> Play::mistake() const {
    return m_mistake ? m_mistake : m_stage->mistake();
}

std::vector<TwoColumns::Entry> Play::followed(bool withTraces) const {
    std::vector<TwoColumns::Entry> followed;
    const std::vector<test::Effect>& ofTheLiving = m_world->effects;
    for (const auto* effects : {&m_ofTheDead, &ofTheLiving}) {
        for (const auto& effect : *effects) {
            if (withTraces || effect.isTold())
                followed.push_back({effect.at, effect.text()});
        }
    }
    return followed;
}

void Play::forget() {
    m_ofTheDead.clear();
    m_world->effects.clear();
}

} // namespace talvera::simulation
