// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedWorld.h"
#include "Story.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace talvera::simulation {

/// Plays one story: an agent on a simulated machine on which everything works but for what the story says,
/// with a text editor in front and a user who has finished the wizard.
class StoryPlayer {
public:
    StoryPlayer();

    /// What followed, from the launch to a minute after the last thing that was done. To be called once.
    /// Throws std::invalid_argument for words that mean nothing.
    std::vector<TwoColumns::Entry> play(const Story& story);

private:
    using Action = std::function<void(const QStringList& arguments)>;
    struct Verb {
        QRegularExpression pattern;
        Action action;
    };

    /// What `pattern`, from the first character to the last, does with what its groups have caught.
    void means(const char* pattern, Action action);
    void learnTheUser();
    void learnTheDesktop();
    void learnTheMachine();
    void learnTheRecogniser();

    void perform(const QString& words);
    void recognise(test::ToolRun run, bool isFirst);

    std::vector<Verb> m_verbs;
    std::vector<test::ToolRun> m_runs;
    std::optional<QString> m_mistake; ///< the first words that meant nothing
    test::SimulatedWorld m_world;     // goes first: it lets what is under way come to its end
};

} // namespace talvera::simulation
