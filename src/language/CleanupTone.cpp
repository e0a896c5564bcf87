// SPDX-License-Identifier: MIT
#include "language/CleanupTone.h"

#include "text/CaseNames.h"

namespace talvera {

namespace {

constexpr CaseNames<CleanupTone, 4> names{{
    {CleanupTone::Off, "off"},
    {CleanupTone::Conversational, "conversational"},
    {CleanupTone::Casual, "casual"},
    {CleanupTone::Professional, "professional"},
}};

} // namespace

QString rawValue(CleanupTone tone) {
    return nameOf(tone, names);
}

std::optional<CleanupTone> cleanupToneFromRawValue(const QString& raw) {
    return caseNamed(raw, names);
}

} // namespace talvera
