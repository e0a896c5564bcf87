// SPDX-License-Identifier: MIT
//
// Caps Lock is a hotkey whose press lasts as long as its lock. Typing lifts the lock, and may not be taken
// for its end.

#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/keys/X11KeyWatch.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "platform/keyboard/VirtualKey.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <mutex>
#include <poll.h>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

using std::chrono::milliseconds;

const QString sentence = QStringLiteral("A sentence that takes a while to type, and some more of it.");

/// Hears the hotkey on a thread of its own, as the agent does.
class Hearing {
public:
    Hearing()
        : m_watch(X11KeyWatch::open(X11Server(), [this](const KeyEvent& event) {
            const std::scoped_lock lock(m_mutex);
            if (m_presses.empty() || m_presses.back() != isPress(event)) {
                m_presses.push_back(isPress(event));
            }
        })) {
        m_watch->waitFor({VirtualKey::CapsLock});
        m_thread = std::jthread([this](const std::stop_token& stop) {
            while (!stop.stop_requested() && m_watch->readEvents()) {
                const auto descriptors = m_watch->descriptors();
                pollfd sources[] = {{descriptors[0], POLLIN, 0}, {descriptors[1], POLLIN, 0}};
                ::poll(sources, 2, 20);
            }
        });
    }

    /// The beginnings (true) and ends (false) of presses so far, once there are `count` of them.
    std::vector<bool> await(std::size_t count) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (;;) {
            {
                const std::scoped_lock lock(m_mutex);
                if (m_presses.size() >= count || std::chrono::steady_clock::now() > deadline) {
                    return m_presses;
                }
            }
            std::this_thread::sleep_for(milliseconds(10));
        }
    }

private:
    std::mutex m_mutex;
    std::vector<bool> m_presses;
    std::unique_ptr<X11KeyWatch> m_watch;
    std::jthread m_thread;
};

} // namespace

TEST(CapsLockHotkey, tappedTwiceWhileATextIsTyped_startsAndEndsOnce) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Qt);
    RigInput keys;
    X11KeyEventPoster poster{X11Server()};
    Hearing hearing;
    std::thread finger;
    const auto tapSlowly = [&] {
        finger = std::thread([&] {
            std::this_thread::sleep_for(milliseconds(12));
            keys.press(Key::capsLock);
            std::this_thread::sleep_for(milliseconds(80));
            keys.release(Key::capsLock);
        });
    };
    EXPECT_EQ(typeText(poster, sentence,
                       [&](qsizetype chunk) {
                           if (chunk == 8) {
                               tapSlowly();
                           } else if (chunk == 20) {
                               finger.join();
                               EXPECT_EQ(hearing.await(1), std::vector<bool>{true});
                               tapSlowly();
                           }
                       }),
              PostResult::Posted);
    finger.join();
    EXPECT_EQ(hearing.await(2), (std::vector<bool>{true, false}));
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
    EXPECT_EQ(keyboardState(), "");
}

TEST(CapsLockHotkey, tappedOnceWhileATextIsTyped_isOnAfterwards) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Gtk);
    RigInput keys;
    X11KeyEventPoster poster{X11Server()};
    Hearing hearing;
    EXPECT_EQ(typeText(poster, sentence,
                       [&](qsizetype chunk) {
                           if (chunk == 8) {
                               keys.tap(Key::capsLock);
                           }
                       }),
              PostResult::Posted);
    EXPECT_TRUE(receiver.waitForText(sentence)) << receiver.text().toStdString();
    EXPECT_EQ(hearing.await(1), std::vector<bool>{true});
    EXPECT_EQ(keyboardState(), "locked 2 ");
    keys.tap(Key::capsLock);
    EXPECT_EQ(hearing.await(2), (std::vector<bool>{true, false}));
}
