// SPDX-License-Identifier: MIT
// What every keyboard and clipboard promises, asked of those of a sway session, in front of programs of both
// kinds.
#include "KeyEventPosterContract.h"
#include "TypingTools.h"
#include "WaylandTools.h"

#include "linux/wayland/clipboard/WaylandPasteboard.h"
#include "linux/wayland/typing/WaylandKeyEventPoster.h"
#include "linux/x11/typing/FocusedXProgram.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

namespace talvera::test {

namespace {

struct WaylandDesk {
    // Before the programs, which hear of a new keyboard only after a while.
    FocusedXProgram xProgram{X11Server()};
    std::unique_ptr<WaylandKeyEventPoster> opened =
        WaylandKeyEventPoster::open([this] { xProgram.awaitReading(); });
    WaylandKeyEventPoster& poster = *opened;
    WaylandPasteboard pasteboard{console, TALVERA_WAYLAND_COMPANION, [] { return false; }};
    Receiver receiver{Receiver::Kind::Gtk};
    std::optional<Receiver> second{};

    bool showsText(const QString& expected) { return receiver.waitForText(expected); }
    QString text() const { return receiver.text(); }
    bool hasKeysDown() { return receiver.waitForKeysDown(true); }
    bool isAtRest() { return receiver.waitForKeysDown(false); }
    QString clipboard() { return selection(Selection::Clipboard); }
    void putImageOnClipboard() { outputOf("printf '\\211PNG' | wl-copy -t image/png >/dev/null 2>&1"); }
    bool offersImage() { return outputOf("wl-paste -l").find("image/png") != std::string::npos; }
    void openAnotherWindow() { second.emplace(Receiver::Kind::WaylandTerminal, QStringLiteral("second")); }
    QString textOfAnotherWindow() { return second->text(); }
};

struct XProgramDesk {
    XProgramsOnly xPrograms;
    WaylandDesk desk;

    WaylandKeyEventPoster& poster = desk.poster;
    WaylandPasteboard& pasteboard = desk.pasteboard;

    bool showsText(const QString& expected) { return desk.showsText(expected); }
    QString text() const { return desk.text(); }
    bool hasKeysDown() { return desk.hasKeysDown(); }
    bool isAtRest() { return desk.isAtRest(); }
    QString clipboard() { return desk.clipboard(); }
    void putImageOnClipboard() { desk.putImageOnClipboard(); }
    bool offersImage() { return desk.offersImage(); }
    void openAnotherWindow() { desk.second.emplace(Receiver::Kind::Terminal, QStringLiteral("second")); }
    QString textOfAnotherWindow() { return desk.textOfAnotherWindow(); }
};

using Desks = testing::Types<WaylandDesk, XProgramDesk>;

class DeskNames {
public:
    template <typename Desk>
    static std::string GetName(int) {
        return std::is_same_v<Desk, WaylandDesk> ? "WaylandProgram" : "XProgram";
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(On, KeyEventPosterContract, Desks, DeskNames);
INSTANTIATE_TYPED_TEST_SUITE_P(On, PasteboardContract, Desks, DeskNames);

} // namespace

} // namespace talvera::test
