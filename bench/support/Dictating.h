// SPDX-License-Identifier: MIT
#pragma once

#include "AgentHome.h"
#include "AgentProcess.h"
#include "RigInput.h"
#include "Speech.h"
#include "Voice.h"
#include "keys.h"
#include "support/KeyWitness.h"

#include <QJsonObject>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace talvera::bench {

/// Somebody who dictates with the real agent on the virtual desktop. Throws std::runtime_error when anything
/// that is waited for doesn't happen.
class Dictating {
public:
    static constexpr XKeycode hotkey = test::Key::rightControl; ///< the hotkey as long as no other is set

    /// Starts the agent and waits until it can record.
    explicit Dictating(const QJsonObject& preferences, const QString& program = TALVERA_PROGRAM);

    /// Holds the hotkey, says this as soon as it is being recorded, and lets go.
    void holdAndSay(const std::vector<std::int16_t>& speech);
    /// The three steps of that. The first answers when the agent said that the HUD shows that it listens.
    KeyWitness::Clock::time_point hold();
    void say(const std::vector<std::int16_t>& speech);
    void release();
    /// Returns when the text has been typed and the agent is ready again.
    void awaitEnd();

    /// The moment at which the X server has seen the hotkey of the last dictation go up.
    KeyWitness::Clock::time_point released();
    /// The moment of the first key that has been typed since.
    KeyWitness::Clock::time_point firstTyped();
    /// The keys that have been typed since.
    std::vector<KeyWitness::Key> typed() const;

    /// Puts our micro language model where the agent looks for one.
    void addLanguageModel() { m_home.addLanguageModel(test::AgentHome::LanguageModel::Micro); }

    pid_t agent() const { return m_agent->pid(); }

private:
    KeyWitness m_witness;
    test::RigInput m_keys;
    test::Voice m_voice;
    test::AgentHome m_home;
    std::optional<test::AgentProcess> m_agent;
};

} // namespace talvera::bench
