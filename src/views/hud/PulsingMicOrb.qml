// SPDX-License-Identifier: MIT
import Talvera

/// The microphone listens.
PulsingBadge {
    symbol: "mic.fill"
}
