// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibility.h"
#include "FakeKeyEventPoster.h"
#include "FakeWorkspace.h"
#include "SimulatedMainActor.h"

#include <QString>

#include <deque>
#include <functional>
#include <map>
#include <optional>

namespace talvera::test {

/// A window on the simulated desktop.
struct SimulatedWindow {
    QString name;             ///< as the keyboard's receiver; empty: no window has the keyboard
    std::optional<pid_t> pid; ///< nothing for a locked screen, which is no application's
    bool takesText = false;   ///< its focus is a text field, and it says so

    bool operator==(const SimulatedWindow&) const = default;
};

/// Which window has the keyboard: what the workspace, accessibility and the keys that are typed know of it is
/// one. An application has a window of its name, and further ones, of which the last that was opened counts.
class SimulatedDesktop {
public:
    static inline const QString locker = QStringLiteral("Locker");

    SimulatedDesktop(const SimulatedMainActor& actor, FakeWorkspace& workspace,
                     FakeAccessibility& accessibility, FakeKeyEventPoster& keys);
    SimulatedDesktop(const SimulatedDesktop&) = delete;
    SimulatedDesktop& operator=(const SimulatedDesktop&) = delete;

    const SimulatedWindow& focused() const { return m_focused; }
    /// The application of a window that has been seen.
    std::optional<pid_t> applicationOf(const QString& window) const;

    /// The application in front opens another window, or goes back to its first.
    void openWindow();
    void goBackToFirstWindow();
    /// A list of completions or the like opens, and takes the keyboard.
    void setPopUp(bool isOpen);
    /// A locker with a password field comes up over everything.
    void setLocked(bool locked);

    /// Whether what has the focus can take text, if it is an application's.
    void setTextFieldFocused(bool focused);
    bool isTextFieldFocused() const { return m_focused.takesText; }
    /// Whether accessibility says nothing of what has the focus.
    void setSilent(bool silent);

    /// Called after each change, with the window that had the keyboard before.
    std::function<void(const SimulatedWindow& before)> onFocus;
    /// Whether anything has changed since `moment`, but by our own request.
    bool hasChangedSince(Instant moment) const { return m_lastChange >= moment; }

private:
    void update();
    SimulatedWindow windowInFront();

    const SimulatedMainActor& m_actor;
    FakeWorkspace& m_workspace;
    FakeAccessibility& m_accessibility;
    FakeKeyEventPoster& m_keys;
    SimulatedWindow m_focused;
    std::map<pid_t, int> m_windowsOf; ///< how many further ones are open
    std::map<QString, std::optional<pid_t>> m_applications;
    bool m_hasTextField = true;
    bool m_hasPopUp = false;
    bool m_isSilent = false;
    Instant m_lastChange = Instant::min();
};

} // namespace talvera::test
