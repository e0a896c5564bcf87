// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace talvera {

/// A keyboard layout that is made while one types: each character has a key of its own, so that neither the
/// user's layout nor a modifier has a part in what is written. Return, Tab, the space bar and Insert are
/// always there.
///
/// The keys are those that write characters on every keyboard. Programs take others for what is printed on
/// them, and compositors bind them to actions whatever they write.
class TypingKeymap {
public:
    enum class Change {
        None,
        Added,    ///< keys that wrote nothing
        Replaced, ///< keys that wrote other characters, too
    };

    /// Gives the characters at the beginning of `text` keys, as many as there are keys for. U+000A is Return
    /// and U+0009 is Tab. What has a key keeps it, as long as there are others left.
    Change makeRoomFor(std::u32string_view text);

    /// In the form that compositors take, "xkb_keymap { ... }".
    std::string xkb() const;

    /// The kernel's number of the key that writes it; nothing where there is none.
    std::optional<std::uint32_t> keyOf(char32_t character) const;

private:
    std::map<std::uint32_t, char32_t> m_characters; ///< of each key that has one, but for those always there
};

} // namespace talvera
