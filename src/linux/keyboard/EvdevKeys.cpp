// SPDX-License-Identifier: MIT
#include "linux/keyboard/EvdevKeys.h"

#include <array>

#include <linux/input-event-codes.h>

namespace talvera::EvdevKeys {

namespace {

struct Row {
    constexpr Row(VirtualKey virtualKey, std::uint16_t evdevCode)
        : key(virtualKey)
        , code{evdevCode} {}

    VirtualKey key;
    EvdevCode code;
};

// A virtual key with several rows is on several physical keys.
// clang-format off
constexpr std::array rows{
    // letters
    Row{VirtualKey::A, KEY_A},
    Row{VirtualKey::B, KEY_B},
    Row{VirtualKey::C, KEY_C},
    Row{VirtualKey::D, KEY_D},
    Row{VirtualKey::E, KEY_E},
    Row{VirtualKey::F, KEY_F},
    Row{VirtualKey::G, KEY_G},
    Row{VirtualKey::H, KEY_H},
    Row{VirtualKey::I, KEY_I},
    Row{VirtualKey::J, KEY_J},
    Row{VirtualKey::K, KEY_K},
    Row{VirtualKey::L, KEY_L},
    Row{VirtualKey::M, KEY_M},
    Row{VirtualKey::N, KEY_N},
    Row{VirtualKey::O, KEY_O},
    Row{VirtualKey::P, KEY_P},
    Row{VirtualKey::Q, KEY_Q},
    Row{VirtualKey::R, KEY_R},
    Row{VirtualKey::S, KEY_S},
    Row{VirtualKey::T, KEY_T},
    Row{VirtualKey::U, KEY_U},
    Row{VirtualKey::V, KEY_V},
    Row{VirtualKey::W, KEY_W},
    Row{VirtualKey::X, KEY_X},
    Row{VirtualKey::Y, KEY_Y},
    Row{VirtualKey::Z, KEY_Z},
    // digits and punctuation
    Row{VirtualKey::Digit1, KEY_1},
    Row{VirtualKey::Digit2, KEY_2},
    Row{VirtualKey::Digit3, KEY_3},
    Row{VirtualKey::Digit4, KEY_4},
    Row{VirtualKey::Digit5, KEY_5},
    Row{VirtualKey::Digit6, KEY_6},
    Row{VirtualKey::Digit7, KEY_7},
    Row{VirtualKey::Digit8, KEY_8},
    Row{VirtualKey::Digit9, KEY_9},
    Row{VirtualKey::Digit0, KEY_0},
    Row{VirtualKey::Minus, KEY_MINUS},
    Row{VirtualKey::Equal, KEY_EQUAL},
    Row{VirtualKey::LeftBracket, KEY_LEFTBRACE},
    Row{VirtualKey::RightBracket, KEY_RIGHTBRACE},
    Row{VirtualKey::Semicolon, KEY_SEMICOLON},
    Row{VirtualKey::Quote, KEY_APOSTROPHE},
    Row{VirtualKey::Grave, KEY_GRAVE},
    Row{VirtualKey::Backslash, KEY_BACKSLASH},
    Row{VirtualKey::Comma, KEY_COMMA},
    Row{VirtualKey::Period, KEY_DOT},
    Row{VirtualKey::Slash, KEY_SLASH},
    Row{VirtualKey::Section, KEY_102ND},
    Row{VirtualKey::Yen, KEY_YEN},
    Row{VirtualKey::Underscore, KEY_RO},
    // white space and editing
    Row{VirtualKey::Return, KEY_ENTER},
    Row{VirtualKey::Tab, KEY_TAB},
    Row{VirtualKey::Space, KEY_SPACE},
    Row{VirtualKey::Backspace, KEY_BACKSPACE},
    Row{VirtualKey::Escape, KEY_ESC},
    Row{VirtualKey::Insert, KEY_INSERT},
    Row{VirtualKey::Home, KEY_HOME},
    Row{VirtualKey::PageUp, KEY_PAGEUP},
    Row{VirtualKey::Delete, KEY_DELETE},
    Row{VirtualKey::End, KEY_END},
    Row{VirtualKey::PageDown, KEY_PAGEDOWN},
    Row{VirtualKey::Left, KEY_LEFT},
    Row{VirtualKey::Right, KEY_RIGHT},
    Row{VirtualKey::Down, KEY_DOWN},
    Row{VirtualKey::Up, KEY_UP},
    Row{VirtualKey::Menu, KEY_COMPOSE},
    // modifiers
    Row{VirtualKey::RightCommand, KEY_RIGHTMETA},
    Row{VirtualKey::RightCommand, KEY_RIGHTCTRL},
    Row{VirtualKey::Command, KEY_LEFTMETA},
    Row{VirtualKey::Shift, KEY_LEFTSHIFT},
    Row{VirtualKey::CapsLock, KEY_CAPSLOCK},
    Row{VirtualKey::Option, KEY_LEFTALT},
    Row{VirtualKey::Control, KEY_LEFTCTRL},
    Row{VirtualKey::RightShift, KEY_RIGHTSHIFT},
    Row{VirtualKey::RightOption, KEY_RIGHTALT},
    Row{VirtualKey::Fn, KEY_WAKEUP},
    // function keys
    Row{VirtualKey::F1, KEY_F1},
    Row{VirtualKey::F2, KEY_F2},
    Row{VirtualKey::F3, KEY_F3},
    Row{VirtualKey::F4, KEY_F4},
    Row{VirtualKey::F5, KEY_F5},
    Row{VirtualKey::F6, KEY_F6},
    Row{VirtualKey::F7, KEY_F7},
    Row{VirtualKey::F8, KEY_F8},
    Row{VirtualKey::F9, KEY_F9},
    Row{VirtualKey::F10, KEY_F10},
    Row{VirtualKey::F11, KEY_F11},
    Row{VirtualKey::F12, KEY_F12},
    Row{VirtualKey::F13, KEY_F13},
    Row{VirtualKey::F13, KEY_SYSRQ},
    Row{VirtualKey::F14, KEY_F14},
    Row{VirtualKey::F14, KEY_SCROLLLOCK},
    Row{VirtualKey::F15, KEY_F15},
    Row{VirtualKey::F15, KEY_PAUSE},
    Row{VirtualKey::F16, KEY_F16},
    Row{VirtualKey::F17, KEY_F17},
    Row{VirtualKey::F18, KEY_F18},
    Row{VirtualKey::F19, KEY_F19},
    Row{VirtualKey::F20, KEY_F20},
    // keypad
    Row{VirtualKey::Keypad0, KEY_KP0},
    Row{VirtualKey::Keypad1, KEY_KP1},
    Row{VirtualKey::Keypad2, KEY_KP2},
    Row{VirtualKey::Keypad3, KEY_KP3},
    Row{VirtualKey::Keypad4, KEY_KP4},
    Row{VirtualKey::Keypad5, KEY_KP5},
    Row{VirtualKey::Keypad6, KEY_KP6},
    Row{VirtualKey::Keypad7, KEY_KP7},
    Row{VirtualKey::Keypad8, KEY_KP8},
    Row{VirtualKey::Keypad9, KEY_KP9},
    Row{VirtualKey::KeypadDecimal, KEY_KPDOT},
    Row{VirtualKey::KeypadMultiply, KEY_KPASTERISK},
    Row{VirtualKey::KeypadPlus, KEY_KPPLUS},
    Row{VirtualKey::KeypadClear, KEY_NUMLOCK},
    Row{VirtualKey::KeypadDivide, KEY_KPSLASH},
    Row{VirtualKey::KeypadEnter, KEY_KPENTER},
    Row{VirtualKey::KeypadMinus, KEY_KPMINUS},
    Row{VirtualKey::KeypadEqual, KEY_KPEQUAL},
    Row{VirtualKey::KeypadComma, KEY_KPCOMMA},
    // sound and input methods
    Row{VirtualKey::VolumeUp, KEY_VOLUMEUP},
    Row{VirtualKey::VolumeDown, KEY_VOLUMEDOWN},
    Row{VirtualKey::Mute, KEY_MUTE},
    Row{VirtualKey::Kana, KEY_HANGEUL},
    Row{VirtualKey::Eisu, KEY_HANJA},
};
// clang-format on

} // namespace

std::vector<EvdevCode> fromVirtual(VirtualKey key) {
    std::vector<EvdevCode> codes;
    for (const auto& row : rows) {
        if (row.key == key)
            codes.push_back(row.code);
    }
    return codes;
}

std::optional<VirtualKey> toVirtual(EvdevCode code) {
    for (const auto& row : rows) {
        if (row.code == code)
            return row.key;
    }
    return std::nullopt;
}

} // namespace talvera::EvdevKeys
