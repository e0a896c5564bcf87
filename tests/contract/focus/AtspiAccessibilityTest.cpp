// SPDX-License-Identifier: MIT
// What real applications tell of their focus, and what becomes of those that don't.
#include "AccessibilityFixture.h"
#include "linux/atspi/GlibPtr.h"
#include "receivers/Receiver.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <csignal>
#include <stdexcept>

#include <unistd.h>

using namespace talvera;
using test::eventually;
using test::Peer;

namespace {

/// A switch of that session's that applications look at; nothing when there is no such service.
std::optional<bool> switchOf(GDBusConnection* session, const char* name) {
    const GlibPtr<GVariant> answer(g_dbus_connection_call_sync(
        session, "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", "org.a11y.Status", name), G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, nullptr));
    if (!answer)
        return std::nullopt;
    GVariant* value = nullptr;
    g_variant_get(answer.get(), "(v)", &value);
    return g_variant_get_boolean(GlibPtr<GVariant>(value).get()) != 0;
}

bool sessionSwitch(const char* name) {
    const GlibPtr<GDBusConnection> session(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    return switchOf(session.get(), name).value();
}

class AtspiAccessibilityTest : public test::AccessibilityFixture {
protected:
    using AccessibilityFixture::AccessibilityFixture;

    static Peer gtk(const QString& widget) { return Peer(TALVERA_PEERS "/gtk-widgets.py", {widget}); }

    /// Qt's programs look for the switch when they start, so it is set before.
    Peer qt(const QString& widget) {
        EXPECT_TRUE(accessibility.setApplicationAttribute(0, "AXManualAccessibility", true));
        return Peer(TALVERA_QT_WIDGETS, {widget});
    }

    void expectRoles(Peer& peer, const std::vector<std::pair<QString, std::string>>& roles) {
        for (const auto& [widget, role] : roles) {
            peer.tell("focus " + widget);
            EXPECT_EQ(focusedRoleOnceItIs(role), role) << widget.toStdString();
        }
    }
};

TEST_F(AtspiAccessibilityTest, gtkWidgets_areKnownForWhatTheyAre) {
    auto peer = gtk("button");
    expectRoles(peer, {{"text-view", "AXTextArea editable"},
                       {"read-only-text-view", "AXStaticText"},
                       {"entry", "AXTextField editable"},
                       {"read-only-entry", "AXStaticText"},
                       {"password", "AXTextField editable"},
                       {"button", "AXButton"},
                       {"search", "AXTextField editable"},
                       {"check-box", "AXCheckBox"},
                       {"spin-button", "AXTextField editable"},
                       {"label", "AXStaticText"},
                       {"editable-combo", "AXTextField editable"},
                       {"slider", "AXSlider"},
                       {"canvas", silentWindow},
                       {"list", "AXGroup"}});
}

TEST_F(AtspiAccessibilityTest, qtWidgets_areKnownForWhatTheyAre) {
    auto peer = qt("button");
    expectRoles(peer, {{"text-view", "AXTextArea editable"},
                       {"read-only-text-view", "AXStaticText"},
                       {"entry", "AXTextField editable"},
                       {"read-only-entry", "AXStaticText"},
                       {"password", "AXTextField editable"},
                       {"button", "AXButton"},
                       {"spin-button", "AXTextField"},
                       {"combo", "AXPopUpButton"},
                       {"editable-combo", "AXComboBox editable"},
                       {"canvas", silentWindow},
                       {"list", "AXGroup"}});
}

TEST_F(AtspiAccessibilityTest, labelAndReadOnlyField_takeNoTextAlthoughTheyHoldSome) {
    auto peer = gtk("label");
    ASSERT_EQ(focusedRoleOnceItIs("AXStaticText"), "AXStaticText");
    EXPECT_FALSE(tracker.hasFocusedTextField());
    peer.tell("focus text-view");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
    peer.tell("focus read-only-text-view");
    ASSERT_EQ(focusedRoleOnceItIs("AXStaticText"), "AXStaticText");
    EXPECT_FALSE(tracker.hasFocusedTextField());
}

TEST_F(AtspiAccessibilityTest, applicationThatWasThereBeforeUs_isAskedForItsFocus) {
    auto peer = gtk("button");
    ASSERT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    AtspiAccessibility latecomer(workspace);
    EXPECT_TRUE(eventually([&] {
        auto focused = latecomer.focusedElement();
        return std::get<std::unique_ptr<AccessibilityElement>>(focused)->stringAttribute("AXRole") ==
               "AXButton";
    }));
}

TEST_F(AtspiAccessibilityTest, vteTerminal_isATextAreaByItsOwnWord) {
    auto peer = gtk("terminal");
    ASSERT_TRUE(isInFront(peer));
    EXPECT_TRUE(eventually([&] {
        auto focused = accessibility.focusedElement();
        const auto* element = std::get_if<std::unique_ptr<AccessibilityElement>>(&focused);
        return element && (*element)->attributeNames()->contains("AXNumberOfCharacters");
    }));
    EXPECT_TRUE(tracker.hasFocusedTextField());
}

TEST_F(AtspiAccessibilityTest, xterm_saysNothingAndTakesText) {
    Peer peer("xterm", {});
    ASSERT_TRUE(isInFront(peer));
    EXPECT_EQ(focusedRole(), silentWindow);
    EXPECT_TRUE(tracker.captureFocusSnapshot());
}

TEST_F(AtspiAccessibilityTest, browser_takesTextInItsPageAboutWhichItSaysNothing) {
    test::Receiver browser(test::Receiver::Kind::Chromium);
    EXPECT_EQ(focusedRole(), silentWindow);
    EXPECT_TRUE(tracker.captureFocusSnapshot());
}

TEST_F(AtspiAccessibilityTest, emptyDesktop_hasNothingInFocus) {
    EXPECT_EQ(focusedRole(), "");
    Peer background(TALVERA_WINDOW_PEER, {"class=Desktop", "type=DESKTOP"});
    background.readUntil("mapped ");
    background.tell("activate");
    EXPECT_FALSE(tracker.hasFocusedTextField());
}

TEST_F(AtspiAccessibilityTest, focus_followsTheUserFromWindowToWindow) {
    auto first = gtk("text-view");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
    auto second = gtk("button");
    EXPECT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    ASSERT_TRUE(workspace.activate(first.pid()));
    EXPECT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
}

TEST_F(AtspiAccessibilityTest, secondWindowOfAnApplication_hasAFocusOfItsOwn) {
    auto peer = gtk("text-view");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
    peer.tell("window button");
    EXPECT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
}

TEST_F(AtspiAccessibilityTest, applicationThatQuits_leavesTheFocusToTheOther) {
    auto first = gtk("text-view");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
    {
        auto second = gtk("button");
        ASSERT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    }
    EXPECT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
}

/// What happens while a hotkey of ours is held down: the keyboard is taken from the application, and the
/// toolkits announce a loss of focus.
class HeldHotkey : public AtspiAccessibilityTest {
protected:
    void hold() {
        const auto answer = connection->reply<xcb_grab_keyboard_reply_t>(
            xcb_grab_keyboard(connection->get(), 0, connection->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                              XCB_GRAB_MODE_ASYNC));
        ASSERT_TRUE(answer);
        ASSERT_EQ(answer->status, XCB_GRAB_STATUS_SUCCESS);
    }
    void letGo() {
        xcb_ungrab_keyboard(connection->get(), XCB_CURRENT_TIME);
        connection->flush();
    }

    /// Whether the focus is `role` as long as the hotkey is held, also after the application has said that it
    /// lost it.
    void expectUnchanged(Peer& peer, const std::string& role) {
        ASSERT_EQ(peer.readUntil("window "), "active");
        hold();
        ASSERT_EQ(peer.readUntil("window "), "inactive");
        // The application's announcement goes another way than its word to us; after it, the answer may
        // change.
        for (int i = 0; i < 20; ++i)
            ASSERT_EQ(focusedRoleOnceItIs(role), role) << i; // a slow application may leave one question open
        letGo();
        ASSERT_EQ(peer.readUntil("window "), "active");
        EXPECT_EQ(focusedRoleOnceItIs(role), role);
    }
};

TEST_F(HeldHotkey, gtkTextView_keepsTheFocus) {
    auto peer = gtk("text-view");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextArea editable"), "AXTextArea editable");
    expectUnchanged(peer, "AXTextArea editable");
}

TEST_F(HeldHotkey, gtkButton_keepsTheFocus) {
    auto peer = gtk("button");
    ASSERT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    expectUnchanged(peer, "AXButton");
}

TEST_F(HeldHotkey, qtButton_keepsTheFocus) {
    auto peer = qt("button");
    ASSERT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    expectUnchanged(peer, "AXButton");
}

TEST_F(HeldHotkey, qtLineEdit_keepsTheFocus) {
    auto peer = qt("entry");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextField editable"), "AXTextField editable");
    expectUnchanged(peer, "AXTextField editable");
}

TEST_F(AtspiAccessibilityTest, hungApplicationInTheBackground_doesNotSlowTheOneInFront) {
    auto hung = gtk("button");
    ASSERT_EQ(focusedRoleOnceItIs("AXButton"), "AXButton");
    auto other = gtk("entry");
    ASSERT_EQ(focusedRoleOnceItIs("AXTextField editable"), "AXTextField editable");
    hung.signal(SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(focusedRole(), "AXTextField editable");
    EXPECT_LT(std::chrono::steady_clock::now() - start, longPatience);
}

TEST_F(AtspiAccessibilityTest, ownWindow_isAskedDirectly) {
    QWidget window;
    QLineEdit line(&window);
    QPushButton button(&window);
    button.move(0, 50);
    line.setFocus();
    window.show();
    ASSERT_TRUE(eventually([&] {
        QApplication::processEvents();
        const auto frontmost = workspace.frontmostApplication();
        return frontmost && frontmost->pid == QCoreApplication::applicationPid() && line.hasFocus();
    }));
    EXPECT_EQ(focusedRole(), "AXTextField editable");
    EXPECT_EQ(tracker.captureFocusSnapshot(), std::nullopt) << "never a target";
    EXPECT_EQ(tracker.matchFocus(std::nullopt), FocusMatch(focus_match::NoSnapshotButHaveTextField{}));
    button.setFocus();
    EXPECT_EQ(focusedRole(), "AXGroup");
    line.setReadOnly(true);
    line.setFocus();
    EXPECT_EQ(focusedRole(), "AXGroup");
}

TEST_F(AtspiAccessibilityTest, screenReaderSwitch_isNeverSet) {
    EXPECT_FALSE(accessibility.setApplicationAttribute(100, "AXEnhancedUserInterface", true));
    EXPECT_FALSE(accessibility.setApplicationAttribute(100, "AXUnheardOf", true));
    EXPECT_FALSE(sessionSwitch("ScreenReaderEnabled"));
}

TEST_F(AtspiAccessibilityTest, enableForSession_setsTheSwitchThatApplicationsLookAt) {
    ASSERT_TRUE(accessibility.setApplicationAttribute(0, "AXManualAccessibility", false));
    ASSERT_FALSE(sessionSwitch("IsEnabled"));
    accessibility.enableForSession();
    EXPECT_TRUE(eventually([&] { return sessionSwitch("IsEnabled"); }));
}

/// A session of its own, whose accessibility bus comes and goes.
class OwnSession : public AtspiAccessibilityTest {
protected:
    QTemporaryDir directory;
    QString address = "unix:path=" + directory.filePath("bus");
    QByteArray formerBus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    QByteArray formerRuntime = qgetenv("XDG_RUNTIME_DIR"); // where accessibility buses have their sockets
    std::optional<Peer> sessionBus;
    std::optional<Peer> accessibilityBus;
    std::optional<AtspiAccessibility> fresh;

    void SetUp() override {
        AtspiAccessibilityTest::SetUp();
        // Without services, so that nobody starts an accessibility bus but the test.
        QFile configuration(directory.filePath("bus.conf"));
        ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
        configuration.write("<busconfig><type>session</type><listen>" + address.toUtf8() +
                            "</listen><policy context=\"default\"><allow send_destination=\"*\" "
                            "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                            "<allow own=\"*\"/></policy></busconfig>");
        configuration.close();
        sessionBus.emplace("dbus-daemon", QStringList{"--nofork", "--nosyslog", "--print-address=1",
                                                      "--config-file=" + configuration.fileName()});
        ASSERT_FALSE(sessionBus->readLine().isEmpty());
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
        qputenv("XDG_RUNTIME_DIR", directory.path().toUtf8());
    }
    void TearDown() override {
        fresh.reset();
        qputenv("DBUS_SESSION_BUS_ADDRESS", formerBus);
        qputenv("XDG_RUNTIME_DIR", formerRuntime);
    }

    void startAccessibilityBus() {
        accessibilityBus.emplace("/usr/libexec/at-spi-bus-launcher", QStringList{"--launch-immediately"});
    }

    bool freshOneHears(const QString& role) {
        return eventually([&] {
            auto focused = fresh->focusedElement();
            const auto* element = std::get_if<std::unique_ptr<AccessibilityElement>>(&focused);
            return element && (*element)->stringAttribute("AXRole") == role;
        });
    }
};

TEST_F(OwnSession, accessibilityBusThatStartsLateOrAnew_isFound) {
    fresh.emplace(workspace, address.toStdString());
    Peer silent(TALVERA_WINDOW_PEER, {"class=Silent"});
    silent.readUntil("mapped ");
    ASSERT_TRUE(isInFront(silent));
    EXPECT_TRUE(freshOneHears(silentWindow)) << "without a bus";

    for (int round = 0; round < 2; ++round) {
        startAccessibilityBus();
        auto peer = gtk("button");
        EXPECT_TRUE(freshOneHears("AXButton")) << round;
        accessibilityBus.reset();
    }
}

TEST_F(OwnSession, accessibilityThatIsRestarted_isSwitchedOnAgain) {
    const GlibPtr<GDBusConnection> session(g_dbus_connection_new_for_address_sync(
        address.toUtf8().constData(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    ASSERT_NE(session, nullptr);
    fresh.emplace(workspace, address.toStdString());
    fresh->enableForSession();
    for (int round = 0; round < 2; ++round) {
        startAccessibilityBus();
        EXPECT_TRUE(eventually([&] { return switchOf(session.get(), "IsEnabled").value_or(false); }))
            << round;
        accessibilityBus.reset();
    }
}

TEST_F(OwnSession, sessionBusThatIsLost_leavesUsWithSilence) {
    fresh.emplace(workspace, address.toStdString());
    startAccessibilityBus();
    auto peer = gtk("button");
    ASSERT_TRUE(freshOneHears("AXButton"));
    accessibilityBus.reset();
    sessionBus.reset();
    Peer other(TALVERA_WINDOW_PEER, {"class=Silent"}); // the toolkit's program may end with its bus
    other.readUntil("mapped ");
    EXPECT_TRUE(freshOneHears(silentWindow));
    EXPECT_FALSE(fresh->setApplicationAttribute(0, "AXManualAccessibility", true));
}

TEST_F(OwnSession, noSessionBusAtAll_isSilence) {
    fresh.emplace(workspace, "unix:path=/nowhere");
    fresh->enableForSession();
    Peer peer(TALVERA_WINDOW_PEER, {"class=Silent"});
    peer.readUntil("mapped ");
    ASSERT_TRUE(isInFront(peer));
    EXPECT_TRUE(freshOneHears(silentWindow));
    EXPECT_FALSE(fresh->setApplicationAttribute(0, "AXManualAccessibility", true));
}

} // namespace
