// SPDX-License-Identifier: MIT
//
// Keyboards that a program puts into the compositor's seat. To the compositor they are as good as any: its
// bindings, locks and layouts work with them.

#include "Hands.h"
#include "sockets.h"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>
#include <virtual-keyboard-client-protocol.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

namespace {

constexpr int evdevOffset = 8;

std::uint32_t milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

class Keyboard {
public:
    Keyboard(zwp_virtual_keyboard_manager_v1* manager, wl_seat* seat, xkb_keymap* keymap)
        : keyboard(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, seat))
        , state(xkb_state_new(keymap)) {
        char* text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
        const std::size_t size = std::strlen(text) + 1;
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (write(file, text, size) != static_cast<ssize_t>(size))
            failWithErrno("keymap");
        zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                       static_cast<std::uint32_t>(size));
        close(file);
        std::free(text);
    }

    // The compositor takes the modifiers from us.
    void key(int keycode, bool down) const {
        zwp_virtual_keyboard_v1_key(keyboard, milliseconds(),
                                    static_cast<std::uint32_t>(keycode - evdevOffset),
                                    down ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
        xkb_state_update_key(state, static_cast<xkb_keycode_t>(keycode), down ? XKB_KEY_DOWN : XKB_KEY_UP);
        zwp_virtual_keyboard_v1_modifiers(keyboard, xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
                                          xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                                          xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
                                          xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
    }

private:
    zwp_virtual_keyboard_v1* keyboard;
    xkb_state* state;
};

// Its objects live as long as the process.
class HandsOnWayland final : public Hands {
public:
    HandsOnWayland()
        : display(wl_display_connect(nullptr)) {
        if (display == nullptr)
            fail("no compositor");
        wl_registry* registry = wl_display_get_registry(display);
        static constexpr wl_registry_listener listener{&HandsOnWayland::announced,
                                                       [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry_add_listener(registry, &listener, this);
        roundTrip();
        if (manager == nullptr || seat == nullptr)
            fail("the compositor takes no keyboards of programs");
        const std::string layout = variable("RIG_LAYOUT");
        const std::string options = variable("RIG_LAYOUT_OPTIONS");
        const xkb_rule_names names{"evdev", "pc105", layout.empty() ? "us" : layout.c_str(), "",
                                   options.c_str()};
        xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
        xkb_keymap* keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
        if (keymap == nullptr)
            fail("no such layout: " + layout);
        for (int i = 0; i < 2; ++i)
            keyboards.emplace_back(manager, seat, keymap);
        roundTrip();
    }

    void key(int keyboard, int keycode, bool down) override {
        keyboards[static_cast<std::size_t>(keyboard)].key(keycode, down);
        roundTrip();
    }
    void move(int, int) override { fail("there is no mouse"); }
    void button(int, bool) override { fail("there is no mouse"); }

    std::vector<int> descriptors() const override { return {wl_display_get_fd(display)}; }
    bool listen() override { return wl_display_dispatch(display) >= 0; }

private:
    static void announced(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                          std::uint32_t) {
        auto& hands = *static_cast<HandsOnWayland*>(data);
        const std::string kind = interface;
        if (kind == wl_seat_interface.name && hands.seat == nullptr)
            hands.seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        else if (kind == zwp_virtual_keyboard_manager_v1_interface.name)
            hands.manager = static_cast<zwp_virtual_keyboard_manager_v1*>(
                wl_registry_bind(registry, name, &zwp_virtual_keyboard_manager_v1_interface, 1));
    }

    void roundTrip() {
        if (wl_display_roundtrip(display) < 0)
            fail("the compositor has gone");
    }

    wl_display* display;
    wl_seat* seat = nullptr;
    zwp_virtual_keyboard_manager_v1* manager = nullptr;
    std::vector<Keyboard> keyboards;
};

} // namespace

std::unique_ptr<Hands> handsOnWayland() {
    return std::make_unique<HandsOnWayland>();
}
