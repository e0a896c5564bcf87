// SPDX-License-Identifier: MIT

/// Something is missing.
PulsingBadge {
    symbol: "exclamationmark"
    color: Theme.warn
    symbolColor: Theme.overlayOpaque
}
