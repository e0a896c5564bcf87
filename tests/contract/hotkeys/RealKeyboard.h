// SPDX-License-Identifier: MIT
#pragma once

#include "KeyLogWindow.h"
#include "RigInput.h"
#include "concurrency/QtMainActor.h"
#include "linux/x11/keys/X11EventTapFactory.h"

#include <QCoreApplication>

#include <functional>

namespace talvera::test {

/// The keyboards of a rig, an application with the focus, and taps that listen.
class RealKeyboard {
public:
    explicit RealKeyboard(Duration bound = seconds(1.0));

    RigInput keys;
    X11EventTapFactory& taps() { return m_taps; }
    KeyLogWindow& window() { return m_window; }
    MainActor& actor() { return m_actor; }

    /// Waits until every key pressed so far has been told to whoever hears of it.
    void settle();
    /// Runs the main thread until `done`.
    void run(const std::function<bool()>& done);

    /// Whether a program of its own could have this key with these X modifiers now.
    bool canBeGrabbed(XKeycode key, std::uint16_t modifiers);

private:
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
    QtMainActor m_actor;
    X11EventTapFactory m_taps;
    KeyLogWindow m_window;
    std::unique_ptr<EventTap> m_barrier;
};

} // namespace talvera::test
