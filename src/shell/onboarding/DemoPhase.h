// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

#include <QString>

#include <array>
#include <utility>

namespace talvera {

/// How far the wizard's demo dictation is.
struct DemoPhase {
    enum class Kind { Idle, Recording, Transcribing, Done, Error };

    static DemoPhase error(QString message) { return {Kind::Error, std::move(message)}; }

    Kind kind = Kind::Idle;
    QString message{}; ///< of an error: words for the user

    bool is(Kind other) const { return kind == other; }
    bool operator==(const DemoPhase&) const = default;
};

template <>
inline constexpr std::array caseNames<DemoPhase::Kind>{
    CaseName{DemoPhase::Kind::Idle, "idle"}, CaseName{DemoPhase::Kind::Recording, "recording"},
    CaseName{DemoPhase::Kind::Transcribing, "transcribing"}, CaseName{DemoPhase::Kind::Done, "done"},
    CaseName{DemoPhase::Kind::Error, "error"}};

} // namespace talvera
