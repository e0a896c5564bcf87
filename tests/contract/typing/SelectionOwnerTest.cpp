// SPDX-License-Identifier: MIT
#include "linux/x11/clipboard/SelectionOwner.h"
#include "RecordingConsole.h"
#include "linux/clipboard/ClipboardHolder.h"
#include "linux/clipboard/ClipboardLink.h"
#include "linux/x11/clipboard/X11Pasteboard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace talvera;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{10};

test::RecordingConsole console;

WipedText textOf(std::string_view bytes) {
    const auto text = makeWipedText(bytes.size());
    std::copy(bytes.begin(), bytes.end(), text->begin());
    return text;
}

/// A selection owner at work on a thread of its own.
class OwnerAtWork {
public:
    explicit OwnerAtWork(WipedText text)
        : m_connection(X11Server().connect())
        , m_owner(*m_connection) {
        EXPECT_TRUE(m_owner.own(std::move(text)));
        m_thread = std::thread([this] { work(); });
    }

    /// Ends the work; after that the owner can be asked.
    SelectionOwner& rest() {
        m_stop = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
        return m_owner;
    }

    ~OwnerAtWork() { rest(); }

private:
    void work() {
        while (!m_stop) {
            if (const XcbEvent event =
                    m_connection->waitForEvent(Clock::now() + std::chrono::milliseconds(5))) {
                m_owner.handle(*event);
            }
        }
    }

    std::unique_ptr<X11Connection> m_connection;
    SelectionOwner m_owner;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

/// Another program, which asks for a selection.
class Requestor {
public:
    struct Answer {
        std::string type;
        std::string bytes;
        bool inPieces = false;
    };

    Requestor()
        : m_connection(X11Server().connect())
        , m_window(xcb_generate_id(m_connection->get())) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection->get(), 0, m_window, m_connection->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }

    X11Connection& connection() { return *m_connection; }
    xcb_window_t window() const { return m_window; }

    void request(std::string_view target, std::string_view selection = "CLIPBOARD",
                 xcb_timestamp_t time = XCB_CURRENT_TIME) {
        xcb_convert_selection(m_connection->get(), m_window, m_connection->atom(selection),
                              m_connection->atom(target), m_connection->atom("ANSWER"), time);
        m_connection->flush();
    }

    /// Waits for the answer and reads it whole; nothing if the owner has no such form.
    std::optional<Answer> answer() {
        const auto notice = awaitEvent(XCB_SELECTION_NOTIFY);
        if (!notice ||
            reinterpret_cast<const xcb_selection_notify_event_t*>(notice.get())->property == XCB_ATOM_NONE) {
            return std::nullopt;
        }
        Answer answer = take(m_connection->atom("ANSWER"));
        if (answer.type != "INCR") {
            return answer;
        }
        Answer whole;
        whole.inPieces = true;
        for (;;) {
            const auto change = awaitEvent(XCB_PROPERTY_NOTIFY);
            if (!change) {
                return std::nullopt;
            }
            if (reinterpret_cast<const xcb_property_notify_event_t*>(change.get())->state !=
                XCB_PROPERTY_NEW_VALUE) {
                continue;
            }
            const Answer piece = take(m_connection->atom("ANSWER"));
            whole.type = piece.type;
            whole.bytes += piece.bytes;
            if (piece.bytes.empty()) {
                return whole;
            }
        }
    }

    std::optional<Answer> ask(std::string_view target, std::string_view selection = "CLIPBOARD") {
        request(target, selection);
        return answer();
    }

    /// Reads a property and deletes it.
    Answer take(xcb_atom_t property) {
        const auto value = m_connection->reply<xcb_get_property_reply_t>(xcb_get_property(
            m_connection->get(), 1, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, UINT32_MAX / 4));
        Answer answer;
        if (value) {
            answer.type = nameOf(value->type);
            answer.bytes.assign(static_cast<const char*>(xcb_get_property_value(value.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(value.get())));
        }
        return answer;
    }

    std::string nameOf(xcb_atom_t atom) {
        const auto name =
            m_connection->reply<xcb_get_atom_name_reply_t>(xcb_get_atom_name(m_connection->get(), atom));
        return name ? std::string(xcb_get_atom_name_name(name.get()),
                                  static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())))
                    : std::string();
    }

    XcbEvent awaitEvent(std::uint8_t type) {
        XcbEvent event;
        do {
            event = m_connection->waitForEvent(Clock::now() + patience);
        } while (event && (event->response_type & 0x7f) != type);
        return event;
    }

    void takeOver(std::string_view selection) {
        xcb_set_selection_owner(m_connection->get(), m_window, m_connection->atom(selection),
                                XCB_CURRENT_TIME);
        m_connection->roundTrip();
    }

private:
    std::unique_ptr<X11Connection> m_connection;
    xcb_window_t m_window;
};

std::vector<std::uint32_t> itemsOf(const std::string& bytes) {
    std::vector<std::uint32_t> items(bytes.size() / sizeof(std::uint32_t));
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(items.data()));
    return items;
}

std::string longText() {
    std::string text;
    while (text.size() < 3'000'000) {
        text += "piece " + std::to_string(text.size()) + ", größer; ";
    }
    return text;
}

} // namespace

TEST(SelectionOwner, bothSelectionsInEachUnicodeForm_giveTheText) {
    const OwnerAtWork owner(textOf("größer 😀"));
    Requestor requestor;
    for (const char* selection : {"CLIPBOARD", "PRIMARY"}) {
        for (const char* target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain"}) {
            SCOPED_TRACE(std::string(selection) + " " + target);
            const auto answer = requestor.ask(target, selection);
            ASSERT_TRUE(answer);
            EXPECT_EQ(answer->type, target);
            EXPECT_EQ(answer->bytes, "größer 😀");
        }
    }
}

TEST(SelectionOwner, textOfTheOldCharacterSet_isGivenAsStringToo) {
    const OwnerAtWork owner(textOf("größer"));
    Requestor requestor;
    for (const char* target : {"STRING", "TEXT"}) {
        const auto answer = requestor.ask(target);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->type, "STRING");
        EXPECT_EQ(answer->bytes, "gr\xF6\xDF"
                                 "er");
    }
}

TEST(SelectionOwner, otherText_isNoStringButTextOfAnyForm) {
    const OwnerAtWork owner(textOf("больше"));
    Requestor requestor;
    EXPECT_FALSE(requestor.ask("STRING"));
    const auto answer = requestor.ask("TEXT");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->type, "UTF8_STRING");
}

TEST(SelectionOwner, targets_areWhatIsGiven) {
    const OwnerAtWork owner(textOf("больше"));
    Requestor requestor;
    const auto answer = requestor.ask("TARGETS");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->type, "ATOM");
    std::vector<std::string> names;
    for (const xcb_atom_t target : itemsOf(answer->bytes)) {
        names.push_back(requestor.nameOf(target));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING",
                                               "text/plain;charset=utf-8", "text/plain", "TEXT"}));
}

TEST(SelectionOwner, unknownFormOrRequestFromBefore_isRefused) {
    Requestor requestor;
    const OwnerAtWork owner(textOf("text"));
    EXPECT_FALSE(requestor.ask("image/png"));
    const auto since = requestor.ask("TIMESTAMP");
    ASSERT_TRUE(since);
    EXPECT_EQ(since->type, "INTEGER");
    const xcb_timestamp_t time = itemsOf(since->bytes).at(0);
    requestor.request("UTF8_STRING", "CLIPBOARD", time - 1);
    EXPECT_FALSE(requestor.answer());
    requestor.request("UTF8_STRING", "CLIPBOARD", time);
    EXPECT_TRUE(requestor.answer());
}

TEST(SelectionOwner, severalFormsAtOnce_areGivenAndTheUnknownMarked) {
    const OwnerAtWork owner(textOf("text"));
    Requestor requestor;
    X11Connection& connection = requestor.connection();
    const std::vector<xcb_atom_t> pairs{connection.atom("UTF8_STRING"), connection.atom("FIRST"),
                                        connection.atom("image/png"), connection.atom("SECOND")};
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, requestor.window(),
                        connection.atom("ANSWER"), connection.atom("ATOM_PAIR"), 32, 4, pairs.data());
    const auto answer = requestor.ask("MULTIPLE");
    ASSERT_TRUE(answer);
    const std::vector<xcb_atom_t> given = itemsOf(answer->bytes);
    ASSERT_EQ(given.size(), 4U);
    EXPECT_EQ(given[1], connection.atom("FIRST"));
    EXPECT_EQ(given[3], static_cast<xcb_atom_t>(XCB_ATOM_NONE));
    EXPECT_EQ(requestor.take(connection.atom("FIRST")).bytes, "text");
}

TEST(SelectionOwner, longTextForSeveralAtOnce_arrivesWholeInPieces) {
    const std::string text = longText();
    const OwnerAtWork owner(textOf(text));
    Requestor one;
    Requestor other;
    one.request("UTF8_STRING");
    other.request("UTF8_STRING");
    for (Requestor* requestor : {&one, &other}) {
        const auto answer = requestor->answer();
        ASSERT_TRUE(answer);
        EXPECT_TRUE(answer->inPieces);
        EXPECT_EQ(answer->type, "UTF8_STRING");
        EXPECT_EQ(answer->bytes, text);
    }
}

TEST(SelectionOwner, lostToAnother_forgetsTheText) {
    WipedText text = textOf("secret");
    const std::weak_ptr<const std::string> memory = text;
    OwnerAtWork owner(std::move(text));
    Requestor requestor;
    requestor.takeOver("CLIPBOARD");
    EXPECT_TRUE(requestor.ask("UTF8_STRING", "PRIMARY"));
    requestor.takeOver("PRIMARY");
    while (!memory.expired()) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(owner.rest().isNeeded());
}

TEST(SelectionOwner, readerThatVanishesOrStalls_isGivenUp) {
    OwnerAtWork owner(textOf(longText()));
    {
        Requestor vanishing;
        vanishing.request("UTF8_STRING");
        ASSERT_TRUE(vanishing.awaitEvent(XCB_SELECTION_NOTIFY));
        vanishing.take(vanishing.connection().atom("ANSWER"));
    }
    Requestor stalling;
    stalling.request("UTF8_STRING");
    ASSERT_TRUE(stalling.awaitEvent(XCB_SELECTION_NOTIFY));
    ASSERT_TRUE(stalling.ask("TIMESTAMP")); // by now the owner has seen the other's end
    SelectionOwner& resting = owner.rest();
    EXPECT_TRUE(resting.isBusy());
    resting.dropStalled(Clock::now() + std::chrono::seconds(60));
    EXPECT_FALSE(resting.isBusy());
}

TEST(ClipboardThread, companionThatCantBeStarted_isReplacedByIt) {
    X11Pasteboard pasteboard(console, "/nowhere/companion", X11Server());
    pasteboard.setString(QStringLiteral("held by a thread"));
    Requestor requestor;
    const auto answer = requestor.ask("UTF8_STRING");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->bytes, "held by a thread");
}

TEST(ClipboardThread, companionThatEndsAtOnce_isReplacedByIt) {
    X11Pasteboard pasteboard(console, "/bin/false", X11Server());
    pasteboard.setString(QStringLiteral("held by a thread"));
    Requestor requestor;
    const auto answer = requestor.ask("UTF8_STRING");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->bytes, "held by a thread");
}

TEST(CompanionProcess, clipboardManager_isGivenTheTextWhenTheAgentEnds) {
    Requestor manager;
    manager.takeOver("CLIPBOARD_MANAGER");
    { X11Pasteboard(console, TALVERA_X11_COMPANION, X11Server()).setString(QStringLiteral("to be kept")); }

    const XcbEvent event = manager.awaitEvent(XCB_SELECTION_REQUEST);
    ASSERT_TRUE(event);
    const auto* request = reinterpret_cast<const xcb_selection_request_event_t*>(event.get());
    EXPECT_EQ(manager.nameOf(request->target), "SAVE_TARGETS");
    const auto text = manager.ask("UTF8_STRING");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->bytes, "to be kept");

    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.requestor = request->requestor;
    answer.selection = request->selection;
    answer.target = request->target;
    answer.property = request->property;
    X11Connection& connection = manager.connection();
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), request->requestor, XCB_CW_EVENT_MASK, &events);
    xcb_send_event(connection.get(), 0, request->requestor, 0, reinterpret_cast<const char*>(&answer));
    connection.flush();
    EXPECT_TRUE(manager.awaitEvent(XCB_DESTROY_NOTIFY)); // it has done its work, and ends
}
