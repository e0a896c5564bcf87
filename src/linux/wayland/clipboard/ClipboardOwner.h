// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/ClipboardLink.h"
#include "linux/wayland/clipboard/DataControl.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>

namespace talvera {

/// Owns the clipboard and the primary selection of a Wayland session with one and the same text, and gives it
/// to each program that asks, as quickly as that reads. One thread, which has the connection's events told.
class ClipboardOwner final : private DataControl::Owner {
public:
    using Clock = std::chrono::steady_clock;

    /// Null where the compositor lets no program without a window have the clipboard.
    static std::unique_ptr<ClipboardOwner> open(WaylandConnection& connection);
    ~ClipboardOwner() override;

    /// Takes the selections for `text`; with Marked::Spared not the primary one if a program has it. True
    /// when they are ours. May have events told meanwhile.
    bool own(WipedText text, Marked marked);

    ClipboardReport report() const;

    /// One of the selections is still ours, or a program is still reading what was.
    bool isNeeded() const;
    bool isFinished() const { return m_control->isFinished(); }

    /// Those who read what they have asked for are waited for here …
    std::vector<pollfd> readers() const;
    /// … until then …
    std::optional<Clock::time_point> nextDeadline() const;
    /// … and go on here: who can take more gets more, and who hasn't for too long is given up.
    void serveReaders();

private:
    /// A text on its way to a program that doesn't take it at one go.
    struct Transfer {
        FileDescriptor pipe;
        WipedText text;
        std::size_t sent = 0;
        Clock::time_point deadline;
    };

    explicit ClipboardOwner(WaylandConnection& connection);
    void onRequest(const std::string& format, FileDescriptor pipe) override;
    void onLost(DataControl::Selection selection) override;
    static bool isDone(Transfer& transfer);

    WaylandConnection& m_connection;
    std::unique_ptr<DataControl> m_control;
    WipedText m_text;
    bool m_wantsPrimary = false;
    std::uint32_t m_requests = 0;
    std::vector<Transfer> m_transfers;
};

} // namespace talvera
