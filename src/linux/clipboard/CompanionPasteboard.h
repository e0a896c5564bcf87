// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/ClipboardHolder.h"
#include "linux/clipboard/ClipboardLink.h"
#include "platform/desktop/Pasteboard.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>

namespace talvera {

class Console;

/// A clipboard that is held by a companion program which outlives us; if it can't be started, by a thread of
/// ours.
class CompanionPasteboard : public Pasteboard {
public:
    /// What each kind of session has of its own. All are called on the thread that sets a text, the first
    /// also by the constructor.
    struct Session {
        std::function<std::unique_ptr<ClipboardHolder>()> startCompanion;
        std::function<std::unique_ptr<ClipboardHolder>()> startThread;
        std::function<Marked()> marked; ///< what is to become of what the user has marked
    };

    /// Starts the companion, without waiting for it.
    CompanionPasteboard(Console& console, Session session);
    ~CompanionPasteboard() override;

    /// Takes a few milliseconds. A companion that is gone or doesn't answer within two seconds is replaced by
    /// another, then by the thread. If even that fails, the clipboard stays as it was, and the log says so.
    bool setString(const QString& text) override;

    /// Not held either if the companion doesn't answer.
    State state() override;

private:
    bool offer(std::string_view utf8, Marked marked);
    void replaceHolder(std::unique_ptr<ClipboardHolder> holder);

    Console& m_console;
    const Session m_session;
    std::mutex m_mutex;
    std::unique_ptr<ClipboardHolder> m_holder;
    std::uint32_t m_serial = 0;
};

} // namespace talvera
