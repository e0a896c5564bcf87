// SPDX-License-Identifier: MIT
import Talvera

/// Something is missing.
PulsingBadge {
    symbol: "exclamationmark"
    color: Theme.warn
    symbolColor: Theme.overlayOpaque
}
