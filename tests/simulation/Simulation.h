// SPDX-License-Identifier: MIT
#pragma once

#include "Dice.h"
#include "Story.h"
#include "Trial.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace talvera::simulation {

/// The lives of agents on one machine on which things go wrong: presses of the hotkey at every moment, and
/// faults of everything around it, all from one seed.
class Simulation {
public:
    /// What is dictated in them.
    enum class Kind {
        Mixed,
        AtOnce, ///< the same, but all that is said comes with the release
        Long,   ///< recordings of many parts, for a recogniser that takes no time and knows a sound again
    };
    explicit Simulation(std::uint64_t seed, Kind kind = Kind::Mixed);

    /// The recogniser is one that can't be prepared; before it runs.
    void useOldRecogniser() { m_trial.play().world().tool.knowsHowToWait = false; }
    /// Whether it was prepared by the agent of the last round.
    bool hasPrepared() { return m_trial.play().world().tool.mostPrepared() > 0; }

    /// Lives through it; stops early when something was wrong.
    void run();

    /// Called behind each round.
    std::function<void()> onRound;

    const std::optional<QString>& violation() const { return m_trial.violation(); }
    const Tally& tally() const { return m_trial.judge().tally(); }
    const FaultTally& faults() const { return m_trial.faults().tally(); }
    /// What followed since the last rest, without the runs of the recogniser.
    QStringList course() const;
    /// What was done since the last rest and what followed.
    QStringList account() const;
    /// The violation as a story of its own, as short as it can be: the last round if that shows it, else all
    /// of them.
    Story story() const;

private:
    /// From the press to the moment at which the first run of the recogniser is about to end.
    struct Hold {
        double press;
        double release;
        double text;
    };

    void hearBySound();
    void chooseSettings();
    void set(const char* name, const QString& value);
    void playRound();
    void scheduleHolds();
    void scheduleSpeech(double begin, double end);
    void scheduleTaps();
    void scheduleDisturbances();
    void scheduleWizard();
    QString wizardStep();
    QString download();
    void scheduleDesktop(const Hold& hold);
    void scheduleFaults(const Hold& hold);
    void scheduleRelease(double at);
    void breakSomething();
    void breakDelivery();
    QString preparationFault();
    QString disturbance();
    QString settingsDisturbance();
    QString desktopDisturbance();
    void writeToolScript();
    void provideModel();
    QString modelAnswer();
    QString toolRun(double duration);
    void chooseAudio();
    bool isAhead() const { return m_isLong && m_kind != Kind::AtOnce; }
    QString randomBinding();

    /// Schedules it `delay` seconds from the beginning of the round.
    void after(double delay, const QString& words);
    void after(double delay, const char* words) { after(delay, QString::fromUtf8(words)); }
    void now(const QString& words) { after(0, words); }
    void now(const char* words) { after(0, words); }

    const Kind m_kind;
    Dice m_dice;
    Trial m_trial;
    int m_texts = 0;
    bool m_isTapMode = false;
    bool m_pastes = false;      ///< always, so that answers may come in several parts
    bool m_isNew = false;       ///< the user has not finished the wizard
    bool m_isLong = false;      ///< what is said comes to the recogniser in parts
    double m_firstDuration = 0; ///< of the round's first run of the recogniser
    double m_roundStart = 0;
    std::vector<TwoColumns::Entry> m_round;  ///< what is done in it
    std::vector<TwoColumns::Entry> m_before; ///< in all rounds before
    QStringList m_given;
};

} // namespace talvera::simulation
