// SPDX-License-Identifier: MIT
#pragma once

#include "Play.h"
#include "Story.h"

#include <vector>

namespace talvera::simulation {

/// Plays one story: an agent on a simulated machine on which everything works but for what the story says,
/// with a text editor in front and a user who has finished the wizard.
class StoryPlayer {
public:
    /// What followed, from the launch to a minute after the last thing that was done. To be called once.
    /// Throws std::invalid_argument for words that mean nothing.
    std::vector<TwoColumns::Entry> play(const Story& story);

private:
    std::vector<TwoColumns::Entry> leftBehind();
    std::vector<TwoColumns::Entry> textsThatWentAstray();

    FaultLog m_faults;
    Play m_play{m_faults};
};

} // namespace talvera::simulation
