// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/clipboard/SelectionOwner.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace talvera {

// The agent sends a text: a TextHead, then its bytes in UTF-8. The companion answers with an OwnedAnswer as
// soon as the clipboard is its own. Both ends are on one machine, of one build.

struct TextHead {
    std::uint32_t serial = 0; ///< comes back in the answer
    std::uint32_t length = 0; ///< bytes
};

struct OwnedAnswer {
    std::uint32_t serial = 0;
    std::uint32_t owned = 0; ///< 1: a paste anywhere now gives the text
};

inline constexpr std::size_t longestClipboardText = 256U * 1024 * 1024;

/// The agent's end: sends a text, and waits for the answer to it. False when that takes longer than `limit`,
/// or when the other end is gone or says no.
bool sendText(int socket, std::uint32_t serial, std::string_view utf8, std::chrono::milliseconds limit);

/// The companion's end: takes in what has arrived, without waiting.
class TextReader {
public:
    struct Arrival {
        std::uint32_t serial = 0;
        WipedText text;
    };
    enum class State { Open, HungUp };

    explicit TextReader(int socket)
        : m_socket(socket) {}

    /// The next text that is complete; nothing if none is. After that, `state()` tells whether more can come.
    std::optional<Arrival> read();
    State state() const { return m_state; }

    void answer(std::uint32_t serial, bool owned) const;

private:
    bool fill(char* bytes, std::size_t size, std::size_t& filled);

    int m_socket;
    State m_state = State::Open;
    TextHead m_head;
    std::size_t m_headFilled = 0;
    std::shared_ptr<std::string> m_text;
    std::size_t m_textFilled = 0;
};

} // namespace talvera
