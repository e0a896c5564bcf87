// SPDX-License-Identifier: MIT
#pragma once

#include "linux/lonekeys/helper/WatchedKeyboard.h"

#include <string>
#include <vector>

namespace talvera {

/// What all keyboards together tell, as lines: "down CODE" and "up CODE" of a watched key, which may be on
/// several of them; "other" once a press, when any other key goes down while one of ours is held; "keyboards
/// N", how many there are to watch.
class KeyTeller {
public:
    /// `output` is told the lines, without ever waiting for its reader.
    explicit KeyTeller(int output)
        : m_output(output) {}

    /// False when the reader has gone or doesn't read: then nothing makes sense any more.
    bool tell(const std::vector<WatchedKeyboard>& keyboards, const std::vector<KeyboardNews>& news);
    bool tellCount(std::size_t keyboards);
    /// Of keyboards that have gone, or aren't ours to hear any more.
    bool tellRest(const std::vector<WatchedKeyboard>& keyboards);

    /// A watched key is held, so that other keys are of interest.
    bool isHeld() const { return !m_held.empty(); }

private:
    bool write(const std::string& line) const;

    const int m_output;
    KeyCodes m_held; ///< told to be down
    bool m_toldOther = false;
    std::optional<std::size_t> m_toldCount{};
};

} // namespace talvera
