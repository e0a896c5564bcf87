// SPDX-License-Identifier: MIT
#include "linux/wayland/clipboard/WaylandPasteboard.h"

#include "linux/wayland/client/WaylandConnection.h"
#include "linux/wayland/clipboard/WaylandClipboardService.h"

#include <memory>
#include <utility>

namespace talvera {

namespace {

struct HeldByThread {
    WaylandConnection connection;
    std::unique_ptr<ClipboardOwner> owner = ClipboardOwner::open(connection);
};

std::unique_ptr<ClipboardHolder> startThread() {
    const auto held = std::make_shared<HeldByThread>();
    if (!held->owner)
        return nullptr;
    return ClipboardThread::start(
        [held](int socket) { WaylandClipboardService(held->connection, *held->owner, socket).serveLink(); });
}

} // namespace

bool WaylandPasteboard::isPossible() {
    return DataControl::isOffered(WaylandConnection());
}

WaylandPasteboard::WaylandPasteboard(Console& console, std::string companionProgram,
                                     std::function<bool()> pastesFromPrimary)
    : CompanionPasteboard(
          console,
          {.startCompanion = [program = std::move(companionProgram)]() -> std::unique_ptr<ClipboardHolder> {
               return CompanionProcess::start(program, environmentOf({"WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"}));
           },
           .startThread = startThread,
           .marked =
               [pastesFromPrimary = std::move(pastesFromPrimary)] {
                   return pastesFromPrimary() ? Marked::Taken : Marked::Spared;
               }}) {}

} // namespace talvera
