// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/WipedText.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace talvera {

// The agent sends requests: a RequestHead, and behind that of a text the text in UTF-8. The companion answers
// each with an Answer; that to a text says that the clipboard is its own. Both ends are on one machine, of
// one build.

enum class ClipboardRequest : std::uint32_t {
    Hold,        ///< take the clipboard and the primary selection for this text
    Report,      ///< tell how the last one fares
    HoldSparing, ///< take the clipboard, and the primary selection only if no program has marked anything
};

/// What was marked may be spared. Where the companion can find out itself whether it should be, it does.
enum class Marked { Taken, Spared };

/// How the text fares that was taken in last.
struct ClipboardReport {
    bool isHeld = false;        ///< a paste anywhere still gives it
    std::uint32_t requests = 0; ///< how often it has been given to a program
};

struct RequestHead {
    std::uint32_t serial = 0; ///< comes back in the answer
    ClipboardRequest request = ClipboardRequest::Hold;
    std::uint32_t length = 0; ///< of the text, in bytes
};

struct ClipboardAnswer {
    std::uint32_t serial = 0;
    std::uint32_t isHeld = 0;   ///< 1: a paste anywhere gives the text
    std::uint32_t requests = 0; ///< how often a program has got it so far
};

inline constexpr std::size_t longestClipboardText = 256U * 1024 * 1024;

/// The agent's end: sends a text, and waits for the answer to it. False when that takes longer than `limit`,
/// or when the other end is gone or says no.
bool sendText(int socket, std::uint32_t serial, std::string_view utf8, std::chrono::milliseconds limit,
              Marked marked = Marked::Taken);

/// Asks how the last text fares. Nothing when that takes longer than `limit` or the other end is gone.
std::optional<ClipboardAnswer> askReport(int socket, std::uint32_t serial, std::chrono::milliseconds limit);

/// The companion's end: takes in what has arrived, without waiting.
class RequestReader {
public:
    struct Arrival {
        std::uint32_t serial = 0;
        WipedText text; ///< null: a report is asked for
        Marked marked = Marked::Taken;
    };
    enum class State { Open, HungUp };

    explicit RequestReader(int socket)
        : m_socket(socket) {}

    /// The next request that is complete; nothing if none is. After that, `state()` tells whether more can
    /// come.
    std::optional<Arrival> read();
    State state() const { return m_state; }

    void answer(std::uint32_t serial, const ClipboardReport& report) const;

private:
    bool fill(char* bytes, std::size_t size, std::size_t& filled);

    int m_socket;
    State m_state = State::Open;
    RequestHead m_head;
    std::size_t m_headFilled = 0;
    std::shared_ptr<std::string> m_text;
    std::size_t m_textFilled = 0;
};

} // namespace talvera
