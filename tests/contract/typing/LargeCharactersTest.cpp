// SPDX-License-Identifier: MIT
//
// Characters beyond the basic plane, before which an application gets the time to take in all others.

#include "ForkedProcess.h"
#include "TypingTools.h"

#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/X11KeyEventPoster.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// A window that has the focus and says that it answers pings.
xcb_window_t makeFocusedWindow(X11Connection& connection) {
    xcb_connection_t* x = connection.get();
    const xcb_window_t window = xcb_generate_id(x);
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(x, XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const xcb_atom_t ping = connection.atom("_NET_WM_PING");
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, connection.atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32,
                        1, &ping);
    xcb_map_window(x, window);
    xcb_set_input_focus(x, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    return connection.roundTrip() ? window : xcb_window_t{XCB_NONE};
}

bool isPing(X11Connection& connection, const xcb_generic_event_t& event) {
    return (event.response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
           reinterpret_cast<const xcb_client_message_event_t&>(event).type == connection.atom("WM_PROTOCOLS");
}

void answerPing(X11Connection& connection, const xcb_generic_event_t& ping) {
    auto answer = reinterpret_cast<const xcb_client_message_event_t&>(ping);
    answer.window = connection.root();
    xcb_send_event(connection.get(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&answer));
    connection.flush();
}

bool isKeyPress(const xcb_generic_event_t& event) {
    return (event.response_type & 0x7f) == XCB_KEY_PRESS;
}

/// A program that tells in which order it gets keys and questions whether it has read them.
class AnsweringProgram {
public:
    AnsweringProgram() {
        EXPECT_NE(makeFocusedWindow(*m_connection), xcb_window_t{XCB_NONE});
        m_thread = std::thread([this] { work(); });
    }
    ~AnsweringProgram() { events(); }

    /// Each key as a "k", each question as a "?", in their order. Ends the program.
    std::string events() {
        m_isOver = true;
        if (m_thread.joinable())
            m_thread.join();
        return m_events;
    }

private:
    void work() {
        while (!m_isOver) {
            const auto event = m_connection->waitForEvent(Clock::now() + milliseconds(50));
            if (event && isKeyPress(*event))
                m_events += 'k';
            if (event && isPing(*m_connection, *event)) {
                m_events += '?';
                answerPing(*m_connection, *event);
            }
        }
    }

    const std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    std::atomic<bool> m_isOver = false;
    std::string m_events;
    std::thread m_thread;
};

/// The work of a program that looks ahead: busy with one key, it takes what comes from the server, answers
/// whether it has read, and leaves further keys for later. When it is done with a key it says "k", or "w"
/// when others are waiting already.
template <typename Say>
void workLookingAhead(const Say& say) {
    const auto connection = X11Server().connect();
    if (makeFocusedWindow(*connection) == xcb_window_t{XCB_NONE})
        return;
    say('r');
    int waiting = 0;
    const auto take = [&](const XcbEvent& event) {
        if (event && isKeyPress(*event))
            ++waiting;
        if (event && isPing(*connection, *event))
            answerPing(*connection, *event);
    };
    while (!connection->isBroken()) {
        take(connection->waitForEvent(Clock::now() + std::chrono::seconds(10)));
        for (; waiting > 0; say(waiting == 0 ? 'k' : 'w')) {
            for (const auto end = Clock::now() + milliseconds(150); Clock::now() < end;)
                take(connection->pollEvent());
            --waiting;
        }
    }
}

std::string eventsOfTyping(const QString& text) {
    setLayout("us");
    AnsweringProgram program;
    {
        X11KeyEventPoster poster{X11Server()};
        EXPECT_EQ(typeText(poster, text), PostResult::Posted);
    }
    const std::string events = program.events();
    const std::size_t first = events.find('k'); // before it, the keys are made that the layout lacks
    const std::size_t last = events.rfind('k');
    return first == std::string::npos ? "" : events.substr(first, last + 1 - first);
}

} // namespace

TEST(LargeCharacters, familyOfEmojis_eachIsTypedWhenItsJoinerHasBeenRead) {
    EXPECT_EQ(eventsOfTyping(QStringLiteral("👩\u200d👩\u200d👧")), "kk?kk?k");
}

TEST(LargeCharacters, programThatLooksAhead_hasNothingWaitingBehindAJoiner) {
    setLayout("us");
    const ForkedProcess program([](auto say) { workLookingAhead(say); });
    ASSERT_EQ(program.hear(), 'r');
    {
        X11KeyEventPoster poster{X11Server()};
        EXPECT_EQ(typeText(poster, QStringLiteral("👩\u200d👩\u200d👧")), PostResult::Posted);
    }
    std::string told;
    for (int key = 0; key < 5; ++key)
        told += program.hear();
    EXPECT_EQ(told[1], 'k') << told;
    EXPECT_EQ(told[3], 'k') << told;
}

TEST(LargeCharacters, textOfTheBasicPlane_isTypedWithoutQuestions) {
    EXPECT_EQ(eventsOfTyping(QStringLiteral("größer")), "kkkkkk");
}

TEST(LargeCharacters, emojisInARow_areTypedWithoutQuestions) {
    EXPECT_EQ(eventsOfTyping(QStringLiteral("👩👧")), "kk");
}
