// SPDX-License-Identifier: MIT
//
// Characters beyond the basic plane, before which an application gets the time to take in all others.

#include "TypingTools.h"

#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/X11KeyEventPoster.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

/// A program that tells in which order it gets keys and questions whether it has read them.
class AnsweringProgram {
public:
    AnsweringProgram() {
        xcb_connection_t* x = m_connection->get();
        const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS};
        xcb_create_window(x, XCB_COPY_FROM_PARENT, m_window, m_connection->root(), 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        const xcb_atom_t ping = m_connection->atom("_NET_WM_PING");
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, m_window, m_protocols, XCB_ATOM_ATOM, 32, 1, &ping);
        xcb_map_window(x, m_window);
        xcb_set_input_focus(x, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
        EXPECT_TRUE(m_connection->roundTrip());
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
            const auto event =
                m_connection->waitForEvent(std::chrono::steady_clock::now() + std::chrono::milliseconds(50));
            const int type = event ? event->response_type & 0x7f : 0;
            if (type == XCB_KEY_PRESS)
                m_events += 'k';
            if (type == XCB_CLIENT_MESSAGE)
                answer(reinterpret_cast<const xcb_client_message_event_t&>(*event));
        }
    }

    void answer(xcb_client_message_event_t message) {
        if (message.type != m_protocols)
            return;
        m_events += '?';
        message.window = m_connection->root();
        xcb_send_event(m_connection->get(), 0, m_connection->root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
        m_connection->flush();
    }

    const std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    const xcb_window_t m_window = xcb_generate_id(m_connection->get());
    const xcb_atom_t m_protocols = m_connection->atom("WM_PROTOCOLS");
    std::atomic<bool> m_isOver = false;
    std::string m_events;
    std::thread m_thread;
};

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

TEST(LargeCharacters, textOfTheBasicPlane_isTypedWithoutQuestions) {
    EXPECT_EQ(eventsOfTyping(QStringLiteral("größer")), "kkkkkk");
}

TEST(LargeCharacters, emojisInARow_areTypedWithoutQuestions) {
    EXPECT_EQ(eventsOfTyping(QStringLiteral("👩👧")), "kk");
}
