// SPDX-License-Identifier: MIT
#pragma once

#include "Peer.h"
#include "RigInput.h"
#include "keys.h"
#include "platform/keyboard/EventTap.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace talvera::test {

/// Whether the program comes to say this line.
bool says(Peer& program, const QString& line);

/// An owner of a tap that swallows what it waits for and writes down what it is told.
struct TapOwner {
    explicit TapOwner(EventTapFactory& taps);

    /// "+49" for a key down by its number, "-49" for its end.
    QStringList told;
    std::uint64_t lastFlags = 0;
    std::unique_ptr<EventTap> tap; ///< enabled
};

/// The user's keyboard in a Wayland session, and a program's window that has the focus. Throws
/// std::runtime_error when the window doesn't get it.
class KeysInWindow {
public:
    static constexpr std::chrono::seconds patience{60};

    KeysInWindow();
    ~KeysInWindow();
    KeysInWindow(const KeysInWindow&) = delete;
    KeysInWindow& operator=(const KeysInWindow&) = delete;

    void press(const std::vector<XKeycode>& pressed);
    void release(const std::vector<XKeycode>& released);
    /// Pressed one after the other, and let go in the opposite order.
    void tap(const std::vector<XKeycode>& tapped);

    /// Runs the main thread until `condition` holds; false when it doesn't in time.
    static bool becomes(const std::function<bool()>& condition);

    /// Which keys have reached the window since the last call: "+65", "-65", by their X keycodes.
    QStringList takeKeys();

private:
    RigInput m_keys;
    std::vector<XKeycode> m_held;
    Peer m_window;
};

} // namespace talvera::test
