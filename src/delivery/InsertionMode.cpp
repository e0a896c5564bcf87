// SPDX-License-Identifier: MIT
#include "delivery/InsertionMode.h"

#include "text/CaseNames.h"

namespace talvera {

namespace {

constexpr CaseNames<InsertionMode, 2> names{{
    {InsertionMode::Paste, "paste"},
    {InsertionMode::AutoByDuration, "autoByDuration"},
}};

} // namespace

QString rawValue(InsertionMode mode) {
    return nameOf(mode, names);
}

std::optional<InsertionMode> insertionModeFromRawValue(const QString& raw) {
    return caseNamed(raw, names);
}

} // namespace talvera
