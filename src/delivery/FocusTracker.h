// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/FocusMatch.h"
#include "delivery/FocusSnapshot.h"

#include <optional>
#include <set>

namespace talvera {

class Accessibility;
class MainActor;
class Workspace;

/// Answers two questions. When recording begins: which application is the text for, and can it take text at
/// all? At delivery: how does the focus relate to what was recorded then? Main thread only; every call holds
/// it for as long as the accessibility tree takes to answer. Failures of that tree count as "no".
class FocusTracker {
public:
    FocusTracker(MainActor& actor, Accessibility& accessibility, Workspace& workspace);

    /// Whether the focused element can take text; generous in doubt.
    bool hasFocusedTextField();

    /// Tells the front application that an assistive client is there, since some show no focus before. Once
    /// per process that took it.
    void primeAccessibility();

    /// The front application, if its focus can take text and it is not this program.
    std::optional<FocusSnapshot> captureFocusSnapshot();

    FocusMatch matchFocus(const std::optional<FocusSnapshot>& snapshot);

private:
    bool isOwnProgram(const std::optional<QString>& bundleID);

    MainActor& m_actor;
    Accessibility& m_accessibility;
    Workspace& m_workspace;
    std::set<pid_t> m_primedPIDs;
    std::optional<std::optional<QString>> m_ownBundleID; ///< once read; it may be absent even then
};

} // namespace talvera
