// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyWatch.h"

#include "KeyLogWindow.h"
#include "KeyMap.h"
#include "RigInput.h"
#include "keys.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

#include <xcb/xinput.h>
#include <xcb/xtest.h>

using namespace talvera;
using talvera::test::KeyMap;
namespace Key = talvera::test::Key;

namespace {

class X11KeyWatchTest : public testing::Test {
protected:
    void readAll() {
        window.settleServer();
        ASSERT_TRUE(watch->readEvents());
    }

    test::KeyLogWindow window;
    test::RigInput keys;
    std::vector<KeyEvent> told;
    std::unique_ptr<X11KeyWatch> watch =
        X11KeyWatch::open(X11Server(), [this](const KeyEvent& event) { told.push_back(event); });
};

TEST_F(X11KeyWatchTest, keysThatNobodyWaitsFor_areNotTold) {
    ASSERT_EQ(watch->waitFor(
                  {KeyInterest(VirtualKey::RightCommand), KeyInterest(KeyChord{0xC0000, VirtualKey::Space})}),
              std::vector(2, WatchResult::Watching));
    for (std::size_t index = 9; index < 97; ++index) {
        const auto key = XKeycode(index);
        if (key != Key::space && key != Key::capsLock) // that one for the sake of the next test
            keys.tap(key);
    }
    keys.tap(Key::space);   // without its modifiers
    keys.tap(Key::numLock); // Num Lock off again
    readAll();
    EXPECT_TRUE(told.empty());
}

// The modifiers' raw events are read first, while the grabs tell of both chords already.
TEST_F(X11KeyWatchTest, chordsPressedBeforeTheFirstIsReadOff_areBothTold) {
    const std::uint64_t modifiers = 0xC0000;
    watch->waitFor({KeyInterest(KeyChord{modifiers, VirtualKey::Space}),
                    KeyInterest(KeyChord{modifiers, VirtualKey::T})});
    const std::vector pressed{Key::leftControl, Key::leftAlt, Key::space, Key::t};
    for (const auto key : pressed)
        keys.press(key);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].keyCode, VirtualKey::Space);
    EXPECT_EQ(told[1].keyCode, VirtualKey::T);
    for (const auto key : pressed)
        keys.release(key);
    readAll();
    EXPECT_EQ(told.size(), 4U);
}

TEST_F(X11KeyWatchTest, otherKeysStruckWhileOneIsHeldAlone_areToldOnceAndWithoutTheirNames) {
    watch->waitFor({KeyInterest(VirtualKey::RightCommand)});
    keys.tap(Key::a);
    keys.press(Key::rightControl);
    keys.tap(Key::a);
    keys.tap(Key::left);
    keys.release(Key::rightControl);
    keys.tap(Key::a);
    readAll();
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[0].keyCode, VirtualKey::RightCommand);
    EXPECT_EQ(told[1].type, KeyEventType::KeyDown);
    EXPECT_EQ(told[1].keyCode, VirtualKey::Unnamed);
    EXPECT_EQ(told[2].keyCode, VirtualKey::RightCommand);
}

TEST_F(X11KeyWatchTest, postedKeyWhileOneIsHeldAlone_isNoOtherKey) {
    watch->waitFor({KeyInterest(VirtualKey::RightCommand)});
    keys.press(Key::rightControl);
    for (const auto type : {XCB_KEY_PRESS, XCB_KEY_RELEASE})
        xcb_test_fake_input(window.connection().get(), static_cast<std::uint8_t>(type),
                            static_cast<xcb_keycode_t>(Key::left), XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    keys.release(Key::rightControl);
    readAll();
    EXPECT_EQ(told.size(), 2U);
}

/// Says of both keyboards that they are this device of the kernel, as drivers of real ones do.
class Nodes {
public:
    explicit Nodes(X11Connection& connection)
        : m_connection(connection) {
        X11InputDevices devices;
        devices.load(connection);
        for (const auto& device : devices.all()) {
            if (device.use == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD && !device.isPosted)
                m_keyboards.push_back(device.id);
        }
    }
    Nodes(const Nodes&) = delete;
    Nodes& operator=(const Nodes&) = delete;
    ~Nodes() {
        for (const auto keyboard : m_keyboards)
            xcb_input_xi_delete_property(m_connection.get(), keyboard, property());
        m_connection.roundTrip();
    }

    void set(std::size_t keyboard, std::string node) {
        const auto length = static_cast<std::uint32_t>(node.size());
        node.resize((node.size() + 3) / 4 * 4); // the library reads whole words
        xcb_input_xi_change_property(m_connection.get(), m_keyboards.at(keyboard), XCB_PROP_MODE_REPLACE, 8,
                                     property(), XCB_ATOM_STRING, length, node.data());
        ASSERT_TRUE(m_connection.roundTrip());
    }

private:
    xcb_atom_t property() { return m_connection.atom("Device Node"); }

    X11Connection& m_connection;
    std::vector<std::uint16_t> m_keyboards;
};

TEST_F(X11KeyWatchTest, fnThatNoKeyboardHas_isUnavailable) {
    // event0 has the wake-up key, event1 hasn't; both have Right Ctrl.
    const QTemporaryDir sysfs;
    const auto tell = [&sysfs](const char* device, const char* keyBits) {
        const QDir directory(
            sysfs.filePath(QStringLiteral("class/input/%1/device/capabilities").arg(QLatin1String(device))));
        QFile file(directory.filePath(QStringLiteral("key")));
        ASSERT_TRUE(directory.mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly));
        file.write(keyBits);
    };
    tell("event0", "8000 200000000 0\n");
    tell("event1", "200000000 0\n");
    const auto watchOnThem = X11KeyWatch::open(
        X11Server(), [](const KeyEvent&) {}, sysfs.path().toStdString());
    const std::vector fn{KeyInterest(VirtualKey::Fn)};
    const std::vector rightCommand{KeyInterest(VirtualKey::RightCommand)};
    Nodes nodes(window.connection());

    EXPECT_EQ(watchOnThem->waitFor(fn), std::vector{WatchResult::Watching}); // nobody knows
    nodes.set(0, "/dev/input/event1");
    EXPECT_EQ(watchOnThem->waitFor(fn), std::vector{WatchResult::Watching});
    nodes.set(1, "/dev/input/event1");
    EXPECT_EQ(watchOnThem->waitFor(fn), std::vector{WatchResult::Unavailable});
    EXPECT_EQ(watchOnThem->waitFor(rightCommand), std::vector{WatchResult::Watching});
    nodes.set(1, "/dev/input/event0");
    EXPECT_EQ(watchOnThem->waitFor(fn), std::vector{WatchResult::Watching});
    nodes.set(1, "/dev/input/event7"); // of which the kernel says nothing
    EXPECT_EQ(watchOnThem->waitFor(fn), std::vector{WatchResult::Watching});
}

TEST_F(X11KeyWatchTest, keyThatBecomesAModifierLater_showsInTheFlags) {
    watch->waitFor({KeyInterest(VirtualKey::RightCommand)});
    const KeyMap map({QStringLiteral("-option"), QStringLiteral("ctrl:nocaps")});
    readAll();
    keys.press(Key::capsLock);
    keys.press(Key::rightSuper);
    keys.release(Key::rightSuper);
    keys.release(Key::capsLock);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].flags, KeyFlag::Command | KeyFlag::Control);
    EXPECT_EQ(told[1].flags, KeyFlag::Control);
}

TEST_F(X11KeyWatchTest, tapReadOnlyAfterItsEnd_isToldWhole) {
    watch->waitFor({KeyInterest(KeyChord{0xC0000, VirtualKey::Space})});
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    readAll();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].type, KeyEventType::KeyDown);
    EXPECT_EQ(told[0].flags, 0xC0000U);
    EXPECT_EQ(told[1].type, KeyEventType::KeyUp);
}

TEST_F(X11KeyWatchTest, strokeRepeatedBeforeItsGrabsAreBack_isToldAndTheNextOneIsOursAgain) {
    watch->waitFor({KeyInterest(KeyStroke{{0xC0000, VirtualKey::Space}})});
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    readAll();
    ASSERT_EQ(told.size(), 1U);
    keys.release(Key::space);
    keys.tap(Key::space);
    keys.press(Key::space);
    readAll();
    EXPECT_EQ(std::ranges::count(told, KeyEventType::KeyDown, &KeyEvent::type), 3);
    EXPECT_EQ(told.back().flags, 0xC0000U);
    keys.release(Key::space);
    readAll();
    EXPECT_EQ(told.size(), 6U);
    EXPECT_EQ(told.back().type, KeyEventType::KeyUp);
    window.takeKeys();

    keys.press(Key::space);
    readAll();
    EXPECT_EQ(told.size(), 7U);
    EXPECT_TRUE(window.takeKeys().empty());
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    readAll();
}

TEST_F(X11KeyWatchTest, keyStruckWithoutItsModifiersBeforeTheGrabsAreBack_isTheApplications) {
    watch->waitFor({KeyInterest(KeyStroke{{0xC0000, VirtualKey::Space}})});
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    readAll();
    for (const auto key : {Key::space, Key::leftAlt})
        keys.release(key);
    window.takeKeys();
    keys.tap(Key::space);
    keys.release(Key::leftControl);
    readAll();
    EXPECT_EQ(told.size(), 2U);
    EXPECT_EQ(window.takeKeys().size(), 3U);
}

TEST_F(X11KeyWatchTest, strokeDuringTheGrabOfAMenu_isTheMenusAlsoRightAfterAnother) {
    watch->waitFor({KeyInterest(KeyStroke{{0xC0000, VirtualKey::Space}})});
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    readAll();
    keys.release(Key::space);
    readAll(); // the grabs are back
    ASSERT_EQ(told.size(), 2U);
    auto& menu = window.connection();
    const auto grabbed = menu.reply<xcb_grab_keyboard_reply_t>(xcb_grab_keyboard(
        menu.get(), 0, menu.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    ASSERT_TRUE(grabbed && grabbed->status == XCB_GRAB_STATUS_SUCCESS);
    keys.tap(Key::space);
    readAll();
    xcb_ungrab_keyboard(menu.get(), XCB_CURRENT_TIME);
    for (const auto key : {Key::leftAlt, Key::leftControl})
        keys.release(key);
    readAll();
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(X11KeyWatchTest, suspendedWatch_tellsNothingAndHasNoChords) {
    watch->waitFor({KeyInterest(KeyChord{0xC0000, VirtualKey::Space})});
    watch->suspend({});
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    readAll();
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(window.takeKeys().size(), 6U);
}

TEST_F(X11KeyWatchTest, specialKeyLetGoDuringASuspension_isToldAfterwards) {
    const std::vector interests{KeyInterest(VirtualKey::RightOption)};
    watch->waitFor(interests);
    keys.press(Key::rightAlt);
    readAll();
    ASSERT_EQ(told.size(), 1U);
    watch->suspend({VirtualKey::RightOption});
    keys.release(Key::rightAlt);
    readAll();
    EXPECT_EQ(told.size(), 1U);
    watch->resume();
    watch->waitFor(interests);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[1].type, KeyEventType::FlagsChanged);
    EXPECT_EQ(told[1].flags, 0U);
}

} // namespace
