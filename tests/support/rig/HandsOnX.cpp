// SPDX-License-Identifier: MIT
//
// Devices of the X server's own, which no client can tell from real ones: the keys that a program posts come
// from another device and can be told apart.

#include "Hands.h"
#include "sockets.h"

#include <xorg/xf86-input-inputtest-protocol.h>

#include <unistd.h>

namespace {

constexpr std::size_t pointerDevice = 2;
constexpr int answerTimeoutMs = 2000;
constexpr int nudgeAfterMs = 10;
constexpr int unusedKeycode = 255;

template <class Answer>
Answer readAnswer(int socket) {
    Answer answer{};
    auto* at = reinterpret_cast<char*>(&answer);
    std::size_t left = sizeof answer;
    while (left > 0) {
        if (!isReadable(socket, answerTimeoutMs))
            fail("the X server didn't answer");
        const ssize_t count = read(socket, at, left);
        if (count <= 0)
            fail("the X server closed the device");
        at += count;
        left -= static_cast<std::size_t>(count);
    }
    return answer;
}

// One device of the X server.
class Device {
public:
    // `keyboard` is a device with keys; none if it is this one.
    explicit Device(const std::string& path, const Device* keyboard)
        : socket(connectTo(path))
        , keyboardSocket(keyboard ? keyboard->socket : socket) {
        xf86ITEventClientVersion version{};
        version.header.length = sizeof version;
        version.header.type = XF86IT_EVENT_CLIENT_VERSION;
        version.major = 1;
        version.minor = 0;
        writeAll(socket, &version, sizeof version);
        readAnswer<xf86ITResponseServerVersion>(socket);
    }

    // Posts the event and waits until the server has worked it off. The server answers when it has emptied
    // its queue. An event that changes nothing, such as a modifier pressed that is down already, never gets
    // into the queue, so the answer needs another one.
    template <class Event>
    void post(Event event) const {
        struct {
            Event event;
            xf86ITEventWaitForSync wait;
        } requests{};
        static_assert(sizeof requests == sizeof(Event) + sizeof(xf86ITEventWaitForSync));
        event.header.length = sizeof event;
        requests.event = event;
        requests.wait.header.length = sizeof requests.wait;
        requests.wait.header.type = XF86IT_EVENT_WAIT_FOR_SYNC;
        writeAll(socket, &requests, sizeof requests);
        if (!isReadable(socket, nudgeAfterMs))
            nudge();
        readAnswer<xf86ITResponseSyncFinished>(socket);
    }

    void key(int keycode, bool down) const {
        xf86ITEventKey event{};
        event.header.type = XF86IT_EVENT_KEY;
        event.key_code = keycode;
        event.is_press = down ? 1 : 0;
        post(event);
    }

    void move(double dx, double dy) const {
        xf86ITEventMotion event{};
        event.header.type = XF86IT_EVENT_MOTION;
        event.valuators.mask[0] = 3;
        event.valuators.valuators[0] = dx;
        event.valuators.valuators[1] = dy;
        post(event);
    }

    void button(int button, bool down) const {
        xf86ITEventButton event{};
        event.header.type = XF86IT_EVENT_BUTTON;
        event.button = button;
        event.is_press = down ? 1 : 0;
        post(event);
    }

    int descriptor() const { return socket; }

private:
    // An event that clients take no notice of: a key goes up that no keyboard has and that isn't down.
    void nudge() const {
        xf86ITEventKey event{};
        event.header.length = sizeof event;
        event.header.type = XF86IT_EVENT_KEY;
        event.key_code = unusedKeycode;
        writeAll(keyboardSocket, &event, sizeof event);
    }

    int socket;
    int keyboardSocket;
};

class HandsOnX final : public Hands {
public:
    explicit HandsOnX(const std::vector<std::string>& paths) {
        for (const std::string& path : paths)
            devices.emplace_back(path, devices.empty() ? nullptr : &devices.front());
    }

    void key(int keyboard, int keycode, bool down) override {
        devices[static_cast<std::size_t>(keyboard)].key(keycode, down);
    }
    void move(int dx, int dy) override { devices[pointerDevice].move(dx, dy); }
    void button(int button, bool down) override { devices[pointerDevice].button(button, down); }

    std::vector<int> descriptors() const override {
        std::vector<int> all;
        for (const Device& device : devices)
            all.push_back(device.descriptor());
        return all;
    }
    /// Unasked it says only that it ends.
    bool listen() override { return false; }

private:
    std::vector<Device> devices;
};

} // namespace

std::unique_ptr<Hands> handsOnX(const std::vector<std::string>& paths) {
    return std::make_unique<HandsOnX>(paths);
}
