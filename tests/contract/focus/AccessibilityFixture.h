// SPDX-License-Identifier: MIT
#pragma once

#include "Peer.h"
#include "SimulatedMainActor.h"
#include "delivery/FocusTracker.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/atspi/AtspiAccessibility.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/EwmhWorkspace.h"

#include <gtest/gtest.h>

#include <QStandardPaths>

#include <chrono>

namespace talvera::test {

/// The real accessibility of the virtual desktop, and what the focus tracker makes of it.
class AccessibilityFixture : public testing::Test {
protected:
    /// Patience enough for a busy machine, where what matters is what applications answer.
    static constexpr std::chrono::seconds longPatience{20};
    /// What counts as able to take text without having said so.
    static constexpr char silentWindow[] = "AXTextArea";

    explicit AccessibilityFixture(std::chrono::milliseconds patience = longPatience)
        : accessibility(workspace, patience) {}

    std::unique_ptr<X11Connection> connection = X11Server().connect();
    DesktopEntryCatalog installed{{}, {}};
    EwmhWorkspace workspace{*connection, installed};
    AtspiAccessibility accessibility;
    SimulatedMainActor actor; ///< its waits take no time
    FocusTracker tracker{actor, accessibility, workspace};

    /// The windows of the test before may still be closing.
    void SetUp() override {
        ASSERT_TRUE(eventually([&] { return !workspace.frontmostApplication(); }));
    }

    bool isInFront(const Peer& peer) {
        return eventually([&] {
            const auto frontmost = workspace.frontmostApplication();
            return frontmost && frontmost->pid == peer.pid();
        });
    }

    /// The role of the focused element, with "editable" behind it if it says so: a window that says nothing
    /// of its focus counts as a text area that doesn't. Empty when nothing has the focus.
    std::string focusedRole() {
        auto focused = accessibility.focusedElement();
        const auto* element = std::get_if<std::unique_ptr<AccessibilityElement>>(&focused);
        if (!element)
            return {};
        const bool editable = (*element)->boolAttribute("AXEditable").value_or(false);
        return (*element)->stringAttribute("AXRole").value_or("none").toStdString() +
               (editable ? " editable" : "");
    }

    /// Waits until the focus is that, and tells what it was last.
    std::string focusedRoleOnceItIs(const std::string& expected) {
        std::string role;
        eventually([&] { return (role = focusedRole()) == expected; });
        return role;
    }
};

} // namespace talvera::test
