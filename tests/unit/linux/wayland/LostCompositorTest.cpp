// SPDX-License-Identifier: MIT
// Compositors that vanish, fall silent or lack something, and the newer form of the clipboard, which none has
// yet.
#include "StandInCompositor.h"
#include "linux/wayland/client/WaylandConnection.h"
#include "linux/wayland/clipboard/ClipboardOwner.h"
#include "linux/wayland/typing/WaylandKeyEventPoster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <data-control-ext-client-protocol.h>
#include <data-control-wlr-client-protocol.h>
#include <fcntl.h>
#include <foreign-toplevel-client-protocol.h>
#include <unistd.h>
#include <virtual-keyboard-client-protocol.h>
#include <wayland-server-core.h>
#include <wayland-server-protocol.h>

using namespace talvera;
using namespace talvera::test;

namespace {

/// One window, which has the keyboard.
void tellOfWindow(StandInCompositor& compositor, wl_resource* manager) {
    constexpr std::uint32_t toplevelEvent = 0;
    constexpr std::uint32_t stateEvent = 4;
    if (std::strcmp(::wl_resource_get_class(manager), zwlr_foreign_toplevel_manager_v1_interface.name) != 0)
        return;
    auto* window = compositor.create(manager, zwlr_foreign_toplevel_handle_v1_interface);
    ::wl_resource_post_event(manager, toplevelEvent, window);
    std::uint32_t activated = ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED;
    wl_array states{.size = sizeof activated, .alloc = sizeof activated, .data = &activated};
    ::wl_resource_post_event(window, stateEvent, &states);
}

class LostCompositor : public testing::Test {
protected:
    std::unique_ptr<WaylandKeyEventPoster> open() const {
        return WaylandKeyEventPoster::open(nullptr, compositor.socket());
    }

    StandInCompositor compositor{{&wl_seat_interface, &zwp_virtual_keyboard_manager_v1_interface,
                                  &zwlr_foreign_toplevel_manager_v1_interface},
                                 tellOfWindow};
};

TEST_F(LostCompositor, thatVanishes_isAFailureAtTheNextKeyAndChord) {
    const auto poster = open();
    ASSERT_TRUE(poster);
    const auto target = poster->focusedTarget();
    const auto session = poster->beginTyping({"a", "b", "c"}, target);
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::Posted);
    EXPECT_EQ(session->post(0, KeyPhase::Up), PostResult::Posted);
    compositor.vanish();
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::CutOff);
    EXPECT_EQ(session->post(2, KeyPhase::Down), PostResult::CutOff);
    EXPECT_EQ(poster->postPaste(KeyPhase::Down, target), PostResult::CutOff);
    EXPECT_TRUE(poster->focusedTarget());
}

TEST_F(LostCompositor, thatFallsSilent_isAFailureAfterAWhile) {
    const auto poster = open();
    ASSERT_TRUE(poster);
    const auto session = poster->beginTyping({"a", "b"}, poster->focusedTarget());
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::Posted);
    compositor.fallSilent();
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::CutOff);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30));
}

TEST(LackingCompositor, withoutAKeyboardOrWindows_hasNoPoster) {
    const StandInCompositor noKeyboard({&wl_seat_interface, &zwlr_foreign_toplevel_manager_v1_interface},
                                       tellOfWindow);
    EXPECT_EQ(WaylandKeyEventPoster::open(nullptr, noKeyboard.socket()), nullptr);
    const StandInCompositor noWindows({&wl_seat_interface, &zwp_virtual_keyboard_manager_v1_interface});
    EXPECT_EQ(WaylandKeyEventPoster::open(nullptr, noWindows.socket()), nullptr);
}

/// How a form of the clipboard is called.
struct Form {
    const wl_interface* manager;
    std::string source;
};

class EachFormOfTheClipboard : public testing::TestWithParam<Form> {
protected:
    static WipedText textOf(std::string_view bytes) {
        const auto text = makeWipedText(bytes.size());
        std::ranges::copy(bytes, text->begin());
        return text;
    }

    bool comes(const std::function<bool()>& condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!condition() && std::chrono::steady_clock::now() < deadline && connection.await({}, 100)) {
        }
        return condition();
    }

    /// What a program gets that asks for it.
    std::string paste() {
        constexpr std::uint32_t sendEvent = 0;
        std::array<int, 2> pipe{};
        EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
        compositor.show(GetParam().source, [&](wl_resource* source) {
            ASSERT_TRUE(source);
            ::wl_resource_post_event(source, sendEvent, "text/plain;charset=utf-8", pipe[1]);
        });
        ::close(pipe[1]);
        const auto before = owner->report().requests;
        EXPECT_TRUE(comes([&] { return owner->report().requests != before; }));
        std::array<char, 100> bytes{};
        const auto count = ::read(pipe[0], bytes.data(), bytes.size());
        ::close(pipe[0]);
        return {bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }

    StandInCompositor compositor{{&wl_seat_interface, GetParam().manager}};
    WaylandConnection connection{compositor.socket()};
    std::unique_ptr<ClipboardOwner> owner = ClipboardOwner::open(connection);
};

TEST_P(EachFormOfTheClipboard, text_isGivenUntilAnotherProgramTakesIt) {
    constexpr std::uint32_t cancelledEvent = 1;
    ASSERT_TRUE(owner);
    EXPECT_TRUE(owner->own(textOf("größer"), Marked::Taken));
    EXPECT_TRUE(owner->report().isHeld);
    EXPECT_EQ(paste(), "größer");
    compositor.show(GetParam().source,
                    [&](wl_resource* source) { ::wl_resource_post_event(source, cancelledEvent); });
    EXPECT_TRUE(comes([&] { return !owner->report().isHeld; }));
}

TEST_P(EachFormOfTheClipboard, compositorThatVanishes_holdsNothing) {
    ASSERT_TRUE(owner);
    compositor.vanish();
    EXPECT_FALSE(owner->own(textOf("text"), Marked::Taken));
}

INSTANTIATE_TEST_SUITE_P(
    Wayland, EachFormOfTheClipboard,
    testing::Values(Form{&zwlr_data_control_manager_v1_interface, "zwlr_data_control_source_v1"},
                    Form{&ext_data_control_manager_v1_interface, "ext_data_control_source_v1"}),
    [](const auto& form) { return form.index == 0 ? "Wlr" : "Ext"; });

TEST(LackingCompositor, withoutAClipboardForPrograms_hasNoOwner) {
    const StandInCompositor compositor({&wl_seat_interface});
    WaylandConnection connection(compositor.socket());
    EXPECT_EQ(ClipboardOwner::open(connection), nullptr);
    EXPECT_FALSE(DataControl::isOffered(connection));
}

} // namespace
