// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "concurrency/Time.h"
#include "text/CaseNames.h"

#include <QString>

#include <memory>
#include <optional>

namespace talvera {

class AppSettings;
class MainActor;

/// The state machine of the dictation, as the tray shows it, and the one gate of the pipeline: a press starts
/// a dictation only while the state is idle. DictationController, which holds the state of the press, and the
/// pipeline assign it. Main thread only.
class MenuBarController {
public:
    enum class State { Idle, Recording, Transcribing, Error };

    MenuBarController(MainActor& actor, AppSettings& settings);

    Published<State> state{State::Idle};
    /// What went wrong, while it is shown.
    Published<std::optional<QString>> lastErrorMessage;
    /// Mirrors of the settings: there is a target language, and clean-up is on.
    Published<bool> translateIndicator;
    Published<bool> aiCleanupIndicator;

    /// Shows an error for `duration`, unless the state moves on before. The time of an earlier error goes on
    /// running, and its end also ends this one.
    void showError(const QString& message, Duration duration);

    /// The name of the symbol that stands in the tray now.
    QString statusIconName() const;

private:
    MainActor& m_actor;
    Cancellables m_cancellables;
    Lifetime m_lifetime;
};

template <>
inline constexpr std::array caseNames<MenuBarController::State>{
    CaseName{MenuBarController::State::Idle, "idle"},
    CaseName{MenuBarController::State::Recording, "recording"},
    CaseName{MenuBarController::State::Transcribing, "transcribing"},
    CaseName{MenuBarController::State::Error, "error"}};

} // namespace talvera
