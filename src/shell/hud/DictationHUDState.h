// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"
#include "text/CaseNames.h"

#include <QString>

#include <type_traits>
#include <utility>
#include <variant>

namespace talvera {

/// What the HUD tells the user at the moment.
struct DictationHUDState {
    enum class NoticeTone { Info, Warn };
    enum class PermissionKind { Microphone, Accessibility };

    /// Nothing is shown.
    struct Hidden {
        bool operator==(const Hidden&) const = default;
    };
    /// Recording; the timer counts from `startedAt`.
    struct Listening {
        WallTime startedAt;
        bool operator==(const Listening&) const = default;
    };
    struct Transcribing {
        bool operator==(const Transcribing&) const = default;
    };
    struct Translating {
        QString targetDisplayName;
        bool operator==(const Translating&) const = default;
    };
    /// A message that hides itself.
    struct Notice {
        QString text;
        NoticeTone tone;
        bool operator==(const Notice&) const = default;
    };
    /// A card that the user can click.
    struct PermissionRequired {
        PermissionKind kind;
        bool operator==(const PermissionRequired&) const = default;
    };

    using Value = std::variant<Hidden, Listening, Transcribing, Translating, Notice, PermissionRequired>;

    DictationHUDState() = default;
    template <typename Case>
    requires(std::is_constructible_v<Value, Case> && !std::is_same_v<Case, DictationHUDState>)
        DictationHUDState(Case shown) // NOLINT(google-explicit-constructor): a case is a state
        : value(std::move(shown)) {}

    /// The case if the state is that one, else null.
    template <typename Case>
    const Case* as() const {
        return std::get_if<Case>(&value);
    }

    Value value;

    bool operator==(const DictationHUDState&) const = default;
};

/// The case's name, as in "permissionRequired".
QString caseName(const DictationHUDState& state);

template <>
inline constexpr std::array caseNames<DictationHUDState::NoticeTone>{
    CaseName{DictationHUDState::NoticeTone::Info, "info"},
    CaseName{DictationHUDState::NoticeTone::Warn, "warn"}};

template <>
inline constexpr std::array caseNames<DictationHUDState::PermissionKind>{
    CaseName{DictationHUDState::PermissionKind::Microphone, "microphone"},
    CaseName{DictationHUDState::PermissionKind::Accessibility, "accessibility"}};

/// The state and what it shows, as in "notice Transcription failed warn": the words of traces and stories.
QString inWords(const DictationHUDState& state);

} // namespace talvera
