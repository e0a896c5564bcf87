// SPDX-License-Identifier: MIT

/// The microphone listens.
PulsingBadge {
    symbol: "mic.fill"
}
