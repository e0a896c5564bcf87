// SPDX-License-Identifier: MIT
//
// Keys and pointer of KWin's own, moved by a program that a desktop file allows it. To KWin they are those of
// the user: its shortcuts, locks and layouts work with them.

#include "Hands.h"
#include "sockets.h"

#include <fake-input-client-protocol.h>
#include <linux/input-event-codes.h>
#include <memory>
#include <string>
#include <vector>
#include <wayland-client.h>

namespace {

constexpr int evdevOffset = 8;

// Its objects live as long as the process.
class HandsOnKwin final : public Hands {
public:
    HandsOnKwin()
        : display(wl_display_connect(nullptr)) {
        if (display == nullptr)
            fail("no compositor");
        wl_registry* registry = wl_display_get_registry(display);
        static constexpr wl_registry_listener listener{&HandsOnKwin::announced,
                                                       [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry_add_listener(registry, &listener, this);
        roundTrip();
        if (input == nullptr)
            fail("KWin lets this program press no keys");
        org_kde_kwin_fake_input_authenticate(input, "kbd", "the hands of a rig");
        roundTrip();
    }

    void key(int, int keycode, bool down) override {
        org_kde_kwin_fake_input_keyboard_key(input, static_cast<std::uint32_t>(keycode - evdevOffset), down);
        roundTrip();
    }
    void move(int dx, int dy) override {
        org_kde_kwin_fake_input_pointer_motion(input, wl_fixed_from_int(dx), wl_fixed_from_int(dy));
        roundTrip();
    }
    void button(int button, bool down) override {
        static constexpr std::uint32_t codes[]{BTN_LEFT, BTN_MIDDLE, BTN_RIGHT};
        if (button < 1 || button > 3)
            fail("no such button");
        org_kde_kwin_fake_input_button(input, codes[button - 1], down);
        roundTrip();
    }

    std::vector<int> descriptors() const override { return {wl_display_get_fd(display)}; }
    bool listen() override { return wl_display_dispatch(display) >= 0; }

private:
    static void announced(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                          std::uint32_t) {
        constexpr std::uint32_t version = 4; // the first with keys
        if (std::string(interface) == org_kde_kwin_fake_input_interface.name)
            static_cast<HandsOnKwin*>(data)->input = static_cast<org_kde_kwin_fake_input*>(
                wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, version));
    }

    // KWin works off requests one after the other, each to its end.
    void roundTrip() {
        if (wl_display_roundtrip(display) < 0)
            fail("the compositor has gone");
    }

    wl_display* display;
    org_kde_kwin_fake_input* input = nullptr;
};

} // namespace

std::unique_ptr<Hands> handsOnKwin() {
    return std::make_unique<HandsOnKwin>();
}
