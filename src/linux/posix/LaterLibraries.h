// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace talvera {

/// The libraries that come into this process after this was made, such as those of a window or of a
/// download, and stay in it, and those that the program has from its start for such uses. What is mapped of
/// their code and constants can be given back when they aren't needed for now: it lies in their files, and is
/// mapped again where it is used. Any thread.
class LaterLibraries {
public:
    /// `others` are beginnings of the file names of those that were there before, such as "libssl.so".
    explicit LaterLibraries(const std::vector<std::string>& others = {});

    /// What they have written, and what could only be written, stays.
    void giveBack() const;

private:
    std::set<std::uintptr_t> m_earlier; ///< where those lie that stay as they are
};

} // namespace talvera
