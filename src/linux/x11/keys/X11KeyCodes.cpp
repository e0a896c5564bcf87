// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyCodes.h"

#include "platform/keyboard/EventTap.h"

#include <array>

#include <xcb/xproto.h>

namespace talvera::X11KeyCodes {

namespace {

struct Key {
    std::uint16_t virtualCode;
    std::uint8_t keycode;
};

// A virtual key with several rows is on several physical keys.
constexpr std::array keys{
    // letters
    Key{0, 38},  // A
    Key{11, 56}, // B
    Key{8, 54},  // C
    Key{2, 40},  // D
    Key{14, 26}, // E
    Key{3, 41},  // F
    Key{5, 42},  // G
    Key{4, 43},  // H
    Key{34, 31}, // I
    Key{38, 44}, // J
    Key{40, 45}, // K
    Key{37, 46}, // L
    Key{46, 58}, // M
    Key{45, 57}, // N
    Key{31, 32}, // O
    Key{35, 33}, // P
    Key{12, 24}, // Q
    Key{15, 27}, // R
    Key{1, 39},  // S
    Key{17, 28}, // T
    Key{32, 30}, // U
    Key{9, 55},  // V
    Key{13, 25}, // W
    Key{7, 53},  // X
    Key{16, 29}, // Y
    Key{6, 52},  // Z
    // digits and punctuation
    Key{18, 10},  // 1
    Key{19, 11},  // 2
    Key{20, 12},  // 3
    Key{21, 13},  // 4
    Key{23, 14},  // 5
    Key{22, 15},  // 6
    Key{26, 16},  // 7
    Key{28, 17},  // 8
    Key{25, 18},  // 9
    Key{29, 19},  // 0
    Key{27, 20},  // minus
    Key{24, 21},  // equal
    Key{33, 34},  // left bracket
    Key{30, 35},  // right bracket
    Key{41, 47},  // semicolon
    Key{39, 48},  // quote
    Key{50, 49},  // grave
    Key{42, 51},  // backslash
    Key{43, 59},  // comma
    Key{47, 60},  // period
    Key{44, 61},  // slash
    Key{10, 94},  // the key between left Shift and Z
    Key{93, 132}, // yen
    Key{94, 97},  // underscore of Japanese keyboards
    // white space and editing
    Key{36, 36},   // Return
    Key{48, 23},   // Tab
    Key{49, 65},   // Space
    Key{51, 22},   // Backspace
    Key{53, 9},    // Escape
    Key{114, 118}, // Insert
    Key{115, 110}, // Home
    Key{116, 112}, // Page Up
    Key{117, 119}, // Delete
    Key{119, 115}, // End
    Key{121, 117}, // Page Down
    Key{123, 113}, // Left
    Key{124, 114}, // Right
    Key{125, 116}, // Down
    Key{126, 111}, // Up
    Key{110, 135}, // Menu
    // modifiers
    Key{54, 134},                        // Right Super
    Key{54, rightControl}, Key{55, 133}, // Left Super
    Key{56, 50},                         // Left Shift
    Key{57, 66},                         // Caps Lock
    Key{58, 64},                         // Left Alt
    Key{59, 37},                         // Left Ctrl
    Key{60, 62},                         // Right Shift
    Key{61, rightAlt}, Key{63, 151},     // Fn
    // function keys
    Key{122, 67},  // F1
    Key{120, 68},  // F2
    Key{99, 69},   // F3
    Key{118, 70},  // F4
    Key{96, 71},   // F5
    Key{97, 72},   // F6
    Key{98, 73},   // F7
    Key{100, 74},  // F8
    Key{101, 75},  // F9
    Key{109, 76},  // F10
    Key{103, 95},  // F11
    Key{111, 96},  // F12
    Key{105, 191}, // F13
    Key{105, 107}, // Print Screen, where PC keyboards have the F13 of others
    Key{107, 192}, // F14
    Key{107, 78},  // Scroll Lock
    Key{113, 193}, // F15
    Key{113, 127}, // Pause
    Key{106, 194}, // F16
    Key{64, 195},  // F17
    Key{79, 196},  // F18
    Key{80, 197},  // F19
    Key{90, 198},  // F20
    // keypad
    Key{82, 90},  // 0
    Key{83, 87},  // 1
    Key{84, 88},  // 2
    Key{85, 89},  // 3
    Key{86, 83},  // 4
    Key{87, 84},  // 5
    Key{88, 85},  // 6
    Key{89, 79},  // 7
    Key{91, 80},  // 8
    Key{92, 81},  // 9
    Key{65, 91},  // decimal
    Key{67, 63},  // multiply
    Key{69, 86},  // plus
    Key{71, 77},  // Num Lock, where others have Clear
    Key{75, 106}, // divide
    Key{76, 104}, // Enter
    Key{78, 82},  // minus
    Key{81, 125}, // equal
    Key{95, 129}, // comma
    // sound and input methods
    Key{72, 123},  // volume up
    Key{73, 122},  // volume down
    Key{74, 121},  // mute
    Key{104, 130}, // kana, hangul
    Key{102, 131}, // eisu, hanja
};

} // namespace

std::vector<std::uint8_t> fromVirtual(std::uint16_t keyCode) {
    std::vector<std::uint8_t> keycodes;
    for (const auto& key : keys) {
        if (key.virtualCode == keyCode)
            keycodes.push_back(key.keycode);
    }
    return keycodes;
}

std::optional<std::uint16_t> toVirtual(std::uint8_t keycode) {
    for (const auto& key : keys) {
        if (key.keycode == keycode)
            return key.virtualCode;
    }
    return std::nullopt;
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
