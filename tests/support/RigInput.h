// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace talvera {

// The keyboards and the mouse of the virtual desktop that the test runs in (tests/support/rig). To the X
// server and its clients these are real devices; keys that a program posts come from another one and can be
// told apart. Each call returns when the server has worked the event off; that clients have seen it must be
// waited for by what they do. Throws std::runtime_error outside a rig and when the server is gone.
class RigInput {
public:
    RigInput();
    ~RigInput();
    RigInput(const RigInput&) = delete;
    RigInput& operator=(const RigInput&) = delete;

    // X keycodes: evdev code + 8, so 38 is the key A and 105 Right Ctrl, whatever the layout. Keyboard 0
    // or 1.
    void press(int keycode, int keyboard = 0);
    void release(int keycode, int keyboard = 0);
    void tap(int keycode, int keyboard = 0); // press and release at once

    void movePointer(int dx, int dy); // pixels
    void pointAt(int x, int y);
    void pressButton(int button = 1);
    void releaseButton(int button = 1);
    void click(int x, int y, int button = 1); // there, press and release at once

private:
    void request(const std::string& line);

    int socket = -1;
};

} // namespace talvera
