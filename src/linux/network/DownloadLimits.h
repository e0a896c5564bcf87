// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace talvera {

/// How long a download has patience with servers and networks.
struct DownloadLimits {
    std::chrono::milliseconds silence = std::chrono::seconds(60); ///< of a server
    std::chrono::milliseconds whole = std::chrono::hours(1);      ///< waiting included
    /// Without a network it is tried again after this pause, then after twice as long, and so on.
    std::chrono::milliseconds firstPause = std::chrono::seconds(2);
    std::chrono::milliseconds longestPause = std::chrono::seconds(30);
    int redirections = 20;
};

} // namespace talvera
