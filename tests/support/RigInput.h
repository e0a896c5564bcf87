// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/XKeycode.h"

#include <string>

namespace talvera::test {

/// The keyboards and the mouse of the virtual desktop that the test runs in (tests/support/rig). To the X
/// server and its clients these are real devices; keys that a program posts come from another one and can be
/// told apart. Each call returns when the server has worked the event off; that clients have seen it must be
/// waited for by what they do. Throws std::runtime_error outside a rig and when the server is gone. One
/// thread at a time.
class RigInput {
public:
    RigInput();
    ~RigInput();
    RigInput(const RigInput&) = delete;
    RigInput& operator=(const RigInput&) = delete;

    /// Keys by their place, whatever the layout; keys.h names them. The keyboard is 0 or 1.
    void press(XKeycode key, int keyboard = 0);
    void release(XKeycode key, int keyboard = 0);
    /// Presses and releases at once.
    void tap(XKeycode key, int keyboard = 0);

    /// By so many pixels.
    void movePointer(int dx, int dy);
    /// To this place on the screen, in pixels.
    void pointAt(int x, int y);
    void pressButton(int button = 1);
    void releaseButton(int button = 1);
    /// Points at the place, presses and releases at once.
    void click(int x, int y, int button = 1);

private:
    void request(const std::string& line);

    int m_socket = -1;
};

} // namespace talvera::test
