// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace talvera {

/// A key by its place on the keyboard, whatever the layout writes there: the same number for the same
/// physical key everywhere. These are the numbers of stored bindings. A binding may hold any other number,
/// too: that of a key which no keyboard here has.
///
/// Letters and signs are called what the US layout has there. Command is the key that PC keyboards label
/// Super or with a logo; their Right Ctrl stands in for RightCommand.
enum class VirtualKey : std::uint16_t {
    A = 0,
    S = 1,
    D = 2,
    F = 3,
    H = 4,
    G = 5,
    Z = 6,
    X = 7,
    C = 8,
    V = 9,
    Section = 10, ///< between left Shift and Z, where a keyboard has a key there
    B = 11,
    Q = 12,
    W = 13,
    E = 14,
    R = 15,
    Y = 16,
    T = 17,
    Digit1 = 18,
    Digit2 = 19,
    Digit3 = 20,
    Digit4 = 21,
    Digit6 = 22,
    Digit5 = 23,
    Equal = 24,
    Digit9 = 25,
    Digit7 = 26,
    Minus = 27,
    Digit8 = 28,
    Digit0 = 29,
    RightBracket = 30,
    O = 31,
    U = 32,
    LeftBracket = 33,
    I = 34,
    P = 35,
    Return = 36,
    L = 37,
    J = 38,
    Quote = 39,
    K = 40,
    Semicolon = 41,
    Backslash = 42,
    Comma = 43,
    Slash = 44,
    N = 45,
    M = 46,
    Period = 47,
    Tab = 48,
    Space = 49,
    Grave = 50,
    Backspace = 51,
    Escape = 53,
    RightCommand = 54,
    Command = 55,
    Shift = 56,
    CapsLock = 57,
    Option = 58, ///< Alt
    Control = 59,
    RightShift = 60,
    RightOption = 61, ///< Right Alt, AltGr
    RightControl = 62,
    Fn = 63,
    F17 = 64,
    KeypadDecimal = 65,
    KeypadMultiply = 67,
    KeypadPlus = 69,
    KeypadClear = 71, ///< Num Lock
    VolumeUp = 72,
    VolumeDown = 73,
    Mute = 74,
    KeypadDivide = 75,
    KeypadEnter = 76,
    KeypadMinus = 78,
    F18 = 79,
    F19 = 80,
    KeypadEqual = 81,
    Keypad0 = 82,
    Keypad1 = 83,
    Keypad2 = 84,
    Keypad3 = 85,
    Keypad4 = 86,
    Keypad5 = 87,
    Keypad6 = 88,
    Keypad7 = 89,
    F20 = 90,
    Keypad8 = 91,
    Keypad9 = 92,
    Yen = 93,
    Underscore = 94, ///< of Japanese keyboards
    KeypadComma = 95,
    F5 = 96,
    F6 = 97,
    F7 = 98,
    F3 = 99,
    F8 = 100,
    F9 = 101,
    Eisu = 102, ///< also Hanja
    F11 = 103,
    Kana = 104, ///< also Hangul
    F13 = 105,  ///< also Print Screen
    F16 = 106,
    F14 = 107, ///< also Scroll Lock
    F10 = 109,
    Menu = 110,
    F12 = 111,
    F15 = 113, ///< also Pause
    Insert = 114,
    Home = 115,
    PageUp = 116,
    Delete = 117,
    F4 = 118,
    End = 119,
    F2 = 120,
    PageDown = 121,
    F1 = 122,
    Left = 123,
    Right = 124,
    Down = 125,
    Up = 126,
    Unnamed = 0xFFFF, ///< some key; which one is left out on purpose
};

/// Modifier bits of key events and bindings.
namespace KeyFlag {
enum : std::uint64_t {
    CapsLock = 0x10000,
    Shift = 0x20000,
    Control = 0x40000,
    Option = 0x80000,   ///< Alt
    Command = 0x100000, ///< Super
    Fn = 0x800000,
};
} // namespace KeyFlag

/// The KeyFlag bit that a modifier key switches; 0 for keys that switch none. Modifier keys have flag
/// changes in place of key downs and key ups.
constexpr std::uint64_t flagOfModifierKey(VirtualKey key) {
    switch (key) {
    case VirtualKey::RightCommand:
    case VirtualKey::Command:
        return KeyFlag::Command;
    case VirtualKey::Shift:
    case VirtualKey::RightShift:
        return KeyFlag::Shift;
    case VirtualKey::CapsLock:
        return KeyFlag::CapsLock;
    case VirtualKey::Option:
    case VirtualKey::RightOption:
        return KeyFlag::Option;
    case VirtualKey::Control:
    case VirtualKey::RightControl:
        return KeyFlag::Control;
    case VirtualKey::Fn:
        return KeyFlag::Fn;
    default:
        return 0;
    }
}

constexpr bool isModifierKey(VirtualKey key) {
    return flagOfModifierKey(key) != 0;
}

} // namespace talvera
