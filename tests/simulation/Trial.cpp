// SPDX-License-Identifier: MIT
#include "Trial.h"

#include "core/Agent.h"
#include "shell/MenuBarController.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace talvera::simulation {

Trial::Trial() {
    nameRuns();
    m_play.onLaunch = [this](test::SimulatedWorld& world) {
        m_judge.watch(world);
        m_play.stage().onWords = [this](const QString& words) { m_judge.hear(words); };
        m_play.stage().onSecondStart = [this] { m_judge.seeSecondStart(); };
    };
    m_play.onDeath = [this] { m_judge.seeDeath(); };
    m_play.onReturn = [this](test::SimulatedWorld& dead) { m_judge.seeReturn(dead); };
}

/// No two runs of the recogniser hear the same, so that each text is known by its words.
void Trial::nameRuns() {
    constexpr int runs = 100;
    std::vector<test::ToolRun> named(runs);
    for (int run = 0; run < runs; ++run)
        named[std::size_t(run)].text = "heard" + QByteArray::number(run);
    m_play.world().tool.setRuns(std::move(named));
}

void Trial::perform(const std::vector<TwoColumns::Entry>& things, double end) {
    m_play.perform(things, end);
}

void Trial::doNow(const QString& words) {
    m_play.perform({{m_play.elapsed(), words}}, m_play.elapsed());
}

void Trial::rest() {
    using State = MenuBarController::State;
    constexpr double longTap = 0.4; // seconds
    doNow(restWords);
    for (int attempts = 0; attempts < 3; ++attempts) {
        if (!m_play.world().runToRest()) {
            m_judge.complain(QStringLiteral("it never comes to rest"));
            return;
        }
        if (m_play.world().agent().menuBar.state.get() != State::Recording)
            break;
        // A press without a release that counted, as in tap mode: one more ends it.
        doNow(QStringLiteral("the hotkey goes down"));
        m_play.perform({}, m_play.elapsed() + longTap);
        doNow(QStringLiteral("the hotkey comes up"));
        doNow(restWords);
    }
    m_judge.judgeRest();
}

std::optional<QString> Trial::run(const Story& story) {
    constexpr double afterwards = 12; // seconds
    for (const auto& words : story.given)
        give(words);
    launch();
    const auto& done = story.columns.done;
    for (auto next = done.begin(); next != done.end() && !violation(); ++next) {
        const auto isRest = [](const auto& thing) { return thing.words == restWords; };
        const auto end = std::find_if(next, done.end(), isRest);
        double last = end != done.end() ? end->at : 0;
        for (auto thing = next; thing != end; ++thing)
            last = std::max(last, thing->at + (end != done.end() ? 0 : afterwards));
        perform({next, end}, last);
        if (const auto mistake = m_play.mistake())
            throw std::invalid_argument(mistake->toStdString());
        if (!violation())
            rest();
        next = end;
        if (next == done.end())
            break;
    }
    return violation();
}

} // namespace talvera::simulation
