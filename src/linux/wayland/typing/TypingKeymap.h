// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace talvera {

/// A keyboard layout made for one text: each character of it has a key of its own, so that neither the user's
/// layout nor a modifier has a part in what is written. Any thread.
///
/// The keys are those that write characters on every keyboard. Programs take others for what is printed on
/// them, and compositors bind them to actions whatever they write.
class TypingKeymap {
public:
    /// For the characters at the beginning of `text`, as many as there are keys for; U+000A is Return and
    /// U+0009 is Tab.
    explicit TypingKeymap(std::u32string_view text);

    /// For the chord that pastes: the key of Insert, which writes nothing.
    static TypingKeymap ofPaste();

    /// In the form that compositors take, "xkb_keymap { ... }".
    std::string xkb() const;

    /// The kernel's number of the key that writes it; nothing where there is none.
    std::optional<std::uint32_t> keyOf(char32_t character) const;

private:
    void add(std::uint32_t key, std::string symbol) { m_symbols.emplace(key, std::move(symbol)); }

    std::map<char32_t, std::uint32_t> m_keys;
    std::map<std::uint32_t, std::string> m_symbols; ///< of each key
};

} // namespace talvera
