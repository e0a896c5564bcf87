// SPDX-License-Identifier: MIT
// The field that records a shortcut, in the wizard: real keys under the layouts that people have.
#include "KeyMap.h"
#include "Loudspeaker.h"
#include "OtherWindow.h"
#include "RunningInputMethod.h"
#include "Wizard.h"
#include "linux/x11/server/X11Server.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <xcb/xtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

const auto rightCtrl = R"({"holdSpecial":{"_0":"rightCommand"}})";
const auto rightAlt = R"({"holdSpecial":{"_0":"rightOption"}})";
const auto capsLock = R"({"holdSpecial":{"_0":"capsLock"}})";

QByteArray chord(int modifiers, int keyCode) {
    return QStringLiteral(R"({"chord":{"modifiers":%1,"keyCode":%2}})").arg(modifiers).arg(keyCode).toUtf8();
}

constexpr int control = 0x40000;
constexpr int controlAlt = 0xC0000;
constexpr int k = 40;
constexpr int y = 16;
constexpr int space = 49;

class Recorder : public WizardTest {
protected:
    void TearDown() override {
        if (HasFailure()) {
            for (const auto key : {Key::k, Key::y, Key::rightSuper, Key::rightAlt, Key::leftShift})
                keys.release(key);
        }
        WizardTest::TearDown();
    }

    void openTheStep() {
        startWizard();
        for (int step = 1; step <= 4; ++step) {
            awaitButton(step == 1 ? "Get started" : "Continue");
            keys.tap(Key::enter);
            awaitStep(step);
        }
    }
    /// Clicks on the field, and waits until it listens.
    void arm() {
        shown(anyRole, "Caps Lock"); // the rows are there
        const auto elements = ScreenReader::read(agent->pid());
        const auto field = std::find_if(elements.rbegin(), elements.rend(), [](const auto& element) {
            return element.name == "Record a custom chord" || element.name == "Custom chord (current)";
        });
        ASSERT_NE(field, elements.rend());
        click(field->place.center());
        ASSERT_TRUE(listens());
    }
    std::optional<ScreenReader::Element> armedField() const {
        return ScreenReader::find(agent->pid(), anyRole, "Press a shortcut…");
    }
    bool listens() const {
        return eventually([this] {
            const auto field = armedField();
            return field && field->is("checked") && field->is("focused");
        });
    }
    bool endsListening() const {
        return eventually([this] { return !armedField(); });
    }
    void tapAll(const std::vector<XKeycode>& all) {
        for (const auto key : all)
            keys.press(key);
        for (auto key = all.rbegin(); key != all.rend(); ++key)
            keys.release(*key);
    }
    bool isBound(const QByteArray& binding) const {
        return becomes("hotkeyBinding", QJsonObject{{"data", QString::fromLatin1(binding.toBase64())}});
    }
    /// The field names what is bound.
    bool names(const QString& name) const {
        return eventually([&] {
            for (const auto& element : ScreenReader::read(agent->pid())) {
                if (element.description == name)
                    return true;
            }
            return false;
        });
    }
    /// Nothing of what was recorded has set off a dictation.
    void expectNoDictation() {
        agent->awaitRest();
        EXPECT_EQ(agent->count("menu recording"), 0);
    }
};

struct Layout {
    const char* name;
    const char* nameOfY; ///< what is on the key right of T
};

class RecorderInLayout : public Recorder, public testing::WithParamInterface<Layout> {};

} // namespace

TEST_P(RecorderInLayout, keysAloneAndChords_areRecordedByTheirPlaceAndNamedByTheLayout) {
    const KeyMap map({"-layout", GetParam().name});
    openTheStep();
    arm();
    keys.tap(Key::rightAlt); // AltGr in most of these
    EXPECT_TRUE(isBound(rightAlt));
    EXPECT_TRUE(names("Right Alt"));

    arm();
    tapAll({Key::leftControl, Key::leftAlt, Key::y});
    EXPECT_TRUE(isBound(chord(controlAlt, y)));
    EXPECT_TRUE(names(QStringLiteral("Ctrl+Alt+") + GetParam().nameOfY));

    arm();
    keys.tap(Key::rightSuper);
    EXPECT_TRUE(isBound(rightCtrl));

    arm();
    keys.tap(Key::capsLock);
    EXPECT_TRUE(isBound(capsLock));
    keys.tap(Key::capsLock); // off again

    arm();
    keys.press(Key::rightControl);
    EXPECT_TRUE(isBound(rightCtrl));
    EXPECT_TRUE(endsListening());
    keys.release(Key::rightControl);

    arm();
    tapAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_TRUE(isBound(chord(controlAlt, space)));
    expectNoDictation();
}

INSTANTIATE_TEST_SUITE_P(Layouts, RecorderInLayout,
                         testing::Values(Layout{"us", "Y"}, Layout{"de", "Z"}, Layout{"fr", "Y"},
                                         Layout{"ru", "Н"}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(Recorder, escape_endsItAndTheHotkeyActs) {
    openTheStep();
    arm();
    keys.tap(Key::escape);
    EXPECT_TRUE(endsListening());
    EXPECT_TRUE(wizard().has_value());
    keys.press(hotkey);
    agent->await("menu recording");
    keys.release(hotkey);
    agent->await("menu idle");
}

TEST_F(Recorder, letterAlone_beepsThroughTheSoundServerAndTheFieldListensOn) {
    openTheStep();
    Loudspeaker loudspeaker;
    arm();
    keys.tap(Key::a);
    EXPECT_TRUE(loudspeaker.hearsSomething());
    EXPECT_TRUE(listens());
    tapAll({Key::leftControl, Key::k});
    EXPECT_TRUE(isBound(chord(control, k)));
}

TEST_F(Recorder, chordThatIsBound_isSaidHoweverLongItIsHeldAndTheFieldListensOn) {
    home.setPreferences({{"hasOnboarded", false},
                         {"hotkeyBinding", chordOfCtrlAltSpace()["hotkeyBinding"]},
                         {"targetLanguageCode", "en"},
                         {"lastTargetLanguageCode", "en"}});
    openTheStep();
    arm();
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    shown("alert", "Ctrl+Alt+Space is set already — press another one");
    EXPECT_TRUE(listens());
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    tapAll({Key::leftControl, Key::leftAlt, Key::leftSuper, Key::t});
    shown("alert", "Ctrl+Alt+Super+T switches translation — press another one");
    EXPECT_TRUE(becomes("targetLanguageCode", "off"));
    EXPECT_TRUE(listens());
    tapAll({Key::leftControl, Key::k});
    EXPECT_TRUE(isBound(chord(control, k)));
    expectNoDictation();
}

TEST_F(Recorder, chordKeptDownAfterItsCapture_startsNothing) {
    openTheStep();
    arm();
    keys.press(Key::leftControl);
    keys.press(Key::k);
    EXPECT_TRUE(isBound(chord(control, k)));
    EXPECT_TRUE(endsListening());
    expectNoDictation(); // of the repeats that come meanwhile
    keys.release(Key::k);
    keys.release(Key::leftControl);
    expectNoDictation();
    for (const auto key : {Key::leftControl, Key::k})
        keys.press(key);
    agent->await("menu recording");
    for (const auto key : {Key::k, Key::leftControl})
        keys.release(key);
    agent->await("menu idle");
}

TEST_F(Recorder, windowThatIsLeft_endsItAndTheHotkeyActs) {
    openTheStep();
    arm();
    OtherWindow other(QRect(0, 0, 200, 100), Qt::darkGreen);
    other.activate();
    EXPECT_TRUE(endsListening());
    keys.press(hotkey);
    agent->await("menu recording");
    keys.release(hotkey);
    agent->await("menu idle");
}

TEST_F(Recorder, layoutSwitchedMeanwhile_changesNothing) {
    const KeyMap map({"-layout", "us,ru", "-option", "grp:alt_shift_toggle"});
    openTheStep();
    arm();
    tapAll({Key::leftAlt, Key::leftShift});
    EXPECT_TRUE(listens());
    tapAll({Key::leftControl, Key::leftAlt, Key::y});
    EXPECT_TRUE(isBound(chord(controlAlt, y)));
    EXPECT_TRUE(names("Ctrl+Alt+Н"));
    tapAll({Key::leftAlt, Key::leftShift});
}

TEST_F(Recorder, capsLockThatIsEscape_endsIt) {
    const KeyMap map({"-layout", "us", "-option", "caps:escape"});
    openTheStep();
    arm();
    keys.tap(Key::capsLock);
    EXPECT_TRUE(endsListening());
    EXPECT_EQ(stored("hotkeyBinding"), QJsonValue(QJsonValue::Undefined));
}

TEST_F(Recorder, capsLockAndCtrlSwapped_makeChordsAndNoKeyToHold) {
    const KeyMap map({"-layout", "us", "-option", "ctrl:swapcaps"});
    openTheStep();
    arm();
    keys.tap(Key::capsLock); // is Ctrl
    EXPECT_TRUE(listens());
    tapAll({Key::capsLock, Key::k});
    EXPECT_TRUE(isBound(chord(control, k)));
    EXPECT_TRUE(endsListening());
    for (const auto key : {Key::capsLock, Key::k})
        keys.press(key);
    agent->await("menu recording");
    for (const auto key : {Key::k, Key::capsLock})
        keys.release(key);
    agent->await("menu idle");
}

TEST_F(Recorder, keysOfAnOnScreenKeyboard_areRecorded) {
    openTheStep();
    arm();
    const auto x11 = X11Server().connect();
    const auto post = [&](std::uint8_t type, XKeycode key) {
        xcb_test_fake_input(x11->get(), type, static_cast<xcb_keycode_t>(key), XCB_CURRENT_TIME, XCB_NONE, 0,
                            0, 0);
        x11->roundTrip();
    };
    for (const auto key : {Key::leftControl, Key::k})
        post(XCB_KEY_PRESS, key);
    for (const auto key : {Key::k, Key::leftControl})
        post(XCB_KEY_RELEASE, key);
    EXPECT_TRUE(isBound(chord(control, k)));
}

TEST_F(Recorder, inputMethod_takesNoKeyFromIt) {
    const RunningInputMethod ibus(RunningInputMethod::Kind::IbusHangul);
    // The toolkit finds it by what lies in the user's directory for settings.
    const auto settings = QFileInfo(home.preferencesFile()).dir().filePath("../ibus");
    ASSERT_TRUE(QFile::link(qEnvironmentVariable("XDG_CONFIG_HOME") + "/ibus", settings));
    openTheStep();
    arm();
    tapAll({Key::leftShift, Key::k}); // would begin a word
    EXPECT_TRUE(isBound(chord(0x20000, k)));
    arm();
    keys.tap(Key::rightAlt); // the key that switches scripts on Korean keyboards
    EXPECT_TRUE(isBound(rightAlt));
}

TEST_F(Recorder, byKeyboardAlone_isReachedUsedAndLeft) {
    openTheStep();
    keys.press(Key::leftShift); // the button that goes on has the keyboard; before it stands "Back"
    keys.tap(Key::tab);
    keys.tap(Key::tab);
    keys.release(Key::leftShift);
    keys.tap(Key::space);
    ASSERT_TRUE(listens());
    keys.tap(Key::tab); // refused, and the keyboard stays
    EXPECT_TRUE(listens());
    tapAll({Key::leftControl, Key::k});
    EXPECT_TRUE(isBound(chord(control, k)));
    EXPECT_TRUE(names("Ctrl+K"));
    keys.tap(Key::tab);
    keys.tap(Key::tab);
    keys.tap(Key::enter);
    awaitStep(5);
}
