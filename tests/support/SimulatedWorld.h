// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedMachine.h"
#include "SimulatedWindows.h"
#include "core/Agent.h"
#include "persistence/AppSettings.h"

#include <nlohmann/json.hpp>

#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace talvera::test {

/// Something that could be seen or heard of the agent from outside, or that it did to the machine.
struct Effect {
    double at = 0; ///< virtual seconds
    std::string effect;
    nlohmann::ordered_json fields = nlohmann::ordered_json::object();

    /// Whether stories tell of it: not of the trace, nor of files that are deleted or requests to the model.
    bool isTold() const;
    /// The effect in words, such as "hud notice Transcription failed warn 3".
    QString text() const;
};

/// Whether a file is of a dictation: the wizard's demo and the warm-up record and recognise, too.
bool isOfADictation(const QString& path);

/// A simulated machine with the agent on it, and all that was seen of it. Arrange the machine and the
/// settings, then launch.
class SimulatedWorld : public SimulatedMachine {
public:
    SimulatedWorld();
    SimulatedWorld(AfterDeath, const SimulatedWorld& before);
    ~SimulatedWorld();

    AppSettings settings{preferences};
    SimulatedWindows windows{actor};

    void launch();
    bool hasAgent() const { return m_agent != nullptr; }
    Agent& agent() { return *m_agent; }

    /// The user's hotkey, by its callbacks.
    void pressStart();
    void pressEnd();

    /// Lets time pass until nothing is left to happen; false if there still is after an hour.
    bool runToRest() { return actor.runToRest(seconds(3600)); }

    /// What has happened so far; called for each as it happens.
    std::vector<Effect> effects;
    std::function<void(const Effect&)> onEffect;

    /// The effects of these kinds, in words.
    QStringList story(const QStringList& kinds) const;
    /// All effects that are told, in words.
    QStringList story() const;
    QStringList traces() const;

    /// The recordings that the wizard's demo began and ended.
    int demoStarts = 0;
    int demoEnds = 0;

    /// Whether saving the coming recordings fails.
    bool recordingsFail = false;

    QStringList wavFiles() const;
    QStringList chunkFiles() const;

private:
    bool isWizardsHotkey() const;
    void observeMachine();
    void observeAgent();
    void note(std::string effect, nlohmann::ordered_json fields = nlohmann::ordered_json::object());

    std::unique_ptr<Agent> m_agent;
    Cancellables m_observations;
};

} // namespace talvera::test
