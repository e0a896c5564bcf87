// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"
#include "platform/desktop/Pasteboard.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace talvera {

class ClipboardHolder;
class Console;

/// The clipboard and the primary selection of the X session, which some programs paste from instead. They
/// are held by a companion program that outlives us; if it can't be started, by a thread of ours.
class X11Pasteboard final : public Pasteboard {
public:
    /// Starts the companion, without waiting for it.
    X11Pasteboard(Console& console, std::string companionProgram, X11Server server);
    ~X11Pasteboard() override;

    /// Takes a few milliseconds. A companion that is gone or doesn't answer within two seconds is replaced by
    /// another, then by the thread. If even that fails, the clipboard stays as it was, and the log says so.
    bool setString(const QString& text) override;

    /// Not held either if the companion doesn't answer.
    State state() override;

private:
    bool offer(std::string_view utf8);
    void replaceHolder(std::unique_ptr<ClipboardHolder> holder);

    Console& m_console;
    const std::string m_companionProgram;
    const X11Server m_server;
    std::mutex m_mutex;
    std::unique_ptr<ClipboardHolder> m_holder;
    std::uint32_t m_serial = 0;
};

} // namespace talvera
