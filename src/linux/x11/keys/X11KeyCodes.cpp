// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyCodes.h"

#include "linux/keyboard/EvdevKeys.h"

#include <xcb/xproto.h>

namespace talvera::X11KeyCodes {

namespace {

constexpr int evdevOffset = 8;

} // namespace

std::vector<XKeycode> fromVirtual(VirtualKey key) {
    std::vector<XKeycode> keycodes;
    for (const auto code : EvdevKeys::fromVirtual(key)) {
        const auto keycode = static_cast<std::size_t>(code) + evdevOffset;
        if (keycode < xKeycodeCount)
            keycodes.push_back(XKeycode(keycode));
    }
    return keycodes;
}

std::optional<VirtualKey> toVirtual(XKeycode keycode) {
    const auto code = static_cast<int>(keycode) - evdevOffset;
    return code < 0 ? std::nullopt : EvdevKeys::toVirtual(EvdevCode(code));
}

std::uint64_t flagsFromState(std::uint16_t state) {
    std::uint64_t flags = 0;
    if (state & XCB_MOD_MASK_SHIFT)
        flags |= KeyFlag::Shift;
    if (state & XCB_MOD_MASK_LOCK)
        flags |= KeyFlag::CapsLock;
    if (state & XCB_MOD_MASK_CONTROL)
        flags |= KeyFlag::Control;
    if (state & XCB_MOD_MASK_1)
        flags |= KeyFlag::Option;
    if (state & XCB_MOD_MASK_4)
        flags |= KeyFlag::Command;
    return flags;
}

std::optional<std::uint16_t> modifiersFromFlags(std::uint64_t flags) {
    std::uint16_t modifiers = 0;
    for (const std::uint16_t modifier :
         {XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_CONTROL, XCB_MOD_MASK_1, XCB_MOD_MASK_4}) {
        if (flags & flagsFromState(modifier))
            modifiers |= modifier;
    }
    return flagsFromState(modifiers) == flags ? std::optional(modifiers) : std::nullopt;
}

} // namespace talvera::X11KeyCodes
