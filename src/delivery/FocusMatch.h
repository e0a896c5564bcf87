// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/FocusSnapshot.h"

#include <variant>

namespace talvera {

/// How the focus at delivery relates to the one that was recorded. Compared by case, and by snapshot for the
/// case that has one.
namespace focus_match {

/// The recorded application is still in front.
struct Same {
    bool operator==(const Same&) const = default;
};

/// Another application is in front, but the recorded one still runs.
struct DifferentButReactivatable {
    FocusSnapshot snapshot;
    bool operator==(const DifferentButReactivatable&) const = default;
};

/// The recorded application no longer runs.
struct OriginalGone {
    bool operator==(const OriginalGone&) const = default;
};

/// Nothing was recorded, but a text field has the focus now.
struct NoSnapshotButHaveTextField {
    bool operator==(const NoSnapshotButHaveTextField&) const = default;
};

/// Nothing was recorded, and no text field has the focus now.
struct NoSnapshotNoTextField {
    bool operator==(const NoSnapshotNoTextField&) const = default;
};

} // namespace focus_match

using FocusMatch =
    std::variant<focus_match::Same, focus_match::DifferentButReactivatable, focus_match::OriginalGone,
                 focus_match::NoSnapshotButHaveTextField, focus_match::NoSnapshotNoTextField>;

} // namespace talvera
