// SPDX-License-Identifier: MIT
#pragma once

#include "Faults.h"
#include "SimulatedWorld.h"

#include <QHash>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace talvera::simulation {

/// The applications that run on the simulated desktop.
namespace desktop {
inline const RunningApplication editor{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
inline const RunningApplication mail{200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")};
inline const RunningApplication nameless{300, std::nullopt, std::nullopt};
inline const RunningApplication ourselves{400, QStringLiteral("talvera"), QStringLiteral("Talvera")};
} // namespace desktop

/// Does to a world what the words say that stories and the simulation have in common.
class Stage {
public:
    Stage(test::SimulatedWorld& world, FaultLog& faults);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Performs it now; what the agent itself has to do, in a turn of its own. Words that mean nothing become
    /// the mistake.
    void perform(const QString& words);
    /// The first words that meant nothing, and why.
    const std::optional<QString>& mistake() const { return m_mistake; }

    /// Whether a key that has gone down for the hotkey has not come up yet.
    bool isHotkeyHeld() const { return m_heldBinding.has_value(); }
    /// The user and the recogniser go on as on the stage before, on which the agent was killed.
    void goOnAfter(const Stage& before) {
        m_heldBinding = before.m_heldBinding;
        m_runs = before.m_runs;
    }

    /// The world goes on, but what befalls it no longer counts.
    void retire() { m_faults = &m_ofNoAccount; }

    /// Called with all words before they are performed.
    std::function<void(const QString& words)> onWords;
    /// Something is told to the user by the program that has been started a second time.
    std::function<void()> onSecondStart;

private:
    using Action = std::function<void(const QStringList& arguments)>;
    struct Verb {
        QRegularExpression pattern;
        Action action;
    };

    /// What `pattern`, from the first character to the last, does with what its groups have caught.
    void means(const char* pattern, Action action);
    /// The same, for what the agent does in a turn of its main thread.
    void meansForAgent(const char* pattern, Action action);
    /// The same, for what the user does in the wizard, if that is open.
    void inWizard(const char* pattern, std::function<void(OnboardingModel&)> action);
    const Verb* verbFor(const QString& words) const;
    void run(const Action& action, const QString& words, const QStringList& arguments);
    bool isTyping() const { return m_world.keys.openSessions() > 0; }

    void learnTheUser();
    void learnTheHotkey();
    void learnTheWizard();
    void learnTheDownload();
    void learnTheDesktop();
    void learnTheFocus();
    void learnTheWaysToText();
    void learnTheMachine();
    void learnTheDisk();
    void learnTheSound();
    void learnTheRecogniser();
    void learnTheLanguageModel();

    void hotkeyDown();
    void hotkeyUp(bool modifierFirst);
    void letGo();
    void startAgain();
    void closeWizard();
    void makeEverythingWork();
    void watchRefusals();
    void noteFocus(const test::SimulatedWindow& before);
    test::ToolRun toolRun(const QStringList& arguments);
    void recognise(test::ToolRun run, bool isFirst);
    void write(test::ModelAnswer answer, bool isFirst);

    test::SimulatedWorld& m_world;
    FaultLog* m_faults;
    FaultLog m_ofNoAccount;
    QHash<QString, Verb> m_plain;                    ///< without arguments
    QHash<QString, std::vector<Verb>> m_byFirstWord; ///< with
    std::optional<HotkeyBinding> m_heldBinding;
    std::vector<test::ToolRun> m_runs;
    std::vector<test::ModelAnswer> m_answers;
    std::optional<QString> m_mistake;
    bool m_isClosing = false; ///< a window is about to go
};

} // namespace talvera::simulation
