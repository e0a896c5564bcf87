// SPDX-License-Identifier: MIT
// What only the older client library can arrange.
#include "HotkeyOnX11.h"
#include "linux/x11/windows/X11SessionAccess.h"

// Last, since they define words such as None and Bool.
#include <X11/XKBlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

using namespace talvera;

namespace {

class X11HotkeyXlib : public test::HotkeyOnX11 {
protected:
    X11HotkeyXlib() {
        int major = 2;
        int minor = 2;
        XIQueryVersion(display.get(), &major, &minor);
    }

    /// Plugs the second keyboard in or out, as far as the session is concerned.
    void setPlugged(bool isPlugged) {
        XIAnyHierarchyChangeInfo change{};
        const auto keyboard1 = static_cast<int>(*deviceNamed("keyboard1"));
        if (isPlugged) {
            change.attach.type = XIAttachSlave;
            change.attach.deviceid = keyboard1;
            change.attach.new_master = static_cast<int>(*deviceNamed("Virtual core keyboard"));
        } else {
            change.detach.type = XIDetachSlave;
            change.detach.deviceid = keyboard1;
        }
        XIChangeHierarchy(display.get(), &change, 1);
        XSync(display.get(), False);
    }

    std::optional<XID> deviceNamed(const std::string& name) {
        std::optional<XID> found;
        int count = 0;
        XIDeviceInfo* devices = XIQueryDevice(display.get(), XIAllDevices, &count);
        for (int i = 0; i < count; ++i) {
            if (name == devices[i].name)
                found = static_cast<XID>(devices[i].deviceid);
        }
        XIFreeDeviceInfo(devices);
        return found;
    }

    void addMaster(char* name) {
        XIAnyHierarchyChangeInfo add{};
        add.add.type = XIAddMaster;
        add.add.name = name;
        add.add.enable = True;
        XIChangeHierarchy(display.get(), &add, 1);
        XSync(display.get(), False);
    }

    void removeMaster(const std::string& name) {
        XIAnyHierarchyChangeInfo remove{};
        remove.remove.type = XIRemoveMaster;
        remove.remove.deviceid = static_cast<int>(*deviceNamed(name + " keyboard"));
        remove.remove.return_mode = XIFloating;
        XIChangeHierarchy(display.get(), &remove, 1);
        XSync(display.get(), False);
    }

    std::unique_ptr<Display, int (*)(Display*)> display{XOpenDisplay(nullptr), XCloseDisplay};
};

TEST_F(X11HotkeyXlib, stickyModifiers_countAsHeld) {
    install();
    XkbLatchModifiers(display.get(), XkbUseCoreKbd, ControlMask | Mod1Mask, ControlMask | Mod1Mask);
    XSync(display.get(), False);
    tap(test::Key::space);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_EQ(keyboard.window().takeKeys(), Keys{});
}

TEST_F(X11HotkeyXlib, keyboardPluggedInLater_isHeard) {
    setPlugged(false);
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    tap(test::Key::rightControl, 1);
    EXPECT_EQ(takeCalls(), Calls{});
    setPlugged(true);
    tap(test::Key::rightControl, 1);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    hotkey.setBinding(HotkeyBinding());
    press(test::Key::leftControl, 1);
    press(test::Key::leftAlt, 1);
    tap(test::Key::space, 1);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11HotkeyXlib, keyboardUnpluggedDuringAPress_endsIt) {
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    press(test::Key::rightControl, 1);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    setPlugged(false);
    EXPECT_EQ(takeCalls(), Calls{"end"});
    release(test::Key::rightControl, 1);
    setPlugged(true);
    EXPECT_EQ(takeCalls(), Calls{});
}

TEST_F(X11HotkeyXlib, laterDeviceForPostedKeys_isNotTheUsers) {
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    char name[] = "later";
    addMaster(name);

    const auto posting = deviceNamed("later XTEST keyboard");
    ASSERT_TRUE(posting);
    XDevice* device = XOpenDevice(display.get(), *posting);
    for (const Bool isPress : {True, False})
        XTestFakeDeviceKeyEvent(display.get(), device, static_cast<KeyCode>(test::Key::rightControl), isPress,
                                nullptr, 0, 0);
    XSync(display.get(), False);
    EXPECT_EQ(takeCalls(), Calls{});

    XCloseDevice(display.get(), device);
    removeMaster(name);
}

TEST_F(X11HotkeyXlib, keysBehindWayland_areRefused) {
    char name[] = "xwayland-keyboard:1";
    addMaster(name);
    X11EventTapFactory taps(keyboard.actor(), X11Server());
    EXPECT_EQ(taps.create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
    EXPECT_EQ(X11SessionAccess(keyboard.window().connection()).lacks(),
              std::vector{SessionLack::KnownSession});
    removeMaster(name);
}

} // namespace
