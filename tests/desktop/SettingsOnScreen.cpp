// SPDX-License-Identifier: MIT
#include "SettingsOnScreen.h"

#include "X11Windows.h"

#include <QProcess>

#include <stdexcept>

#include <linux/input-event-codes.h>

namespace talvera::test {

namespace {

constexpr QSize leastSettings{500, 350}; ///< larger than the panel and the HUD

} // namespace

std::optional<QRect> SettingsOnScreen::settings() {
    return X11Windows().viewable("talvera", leastSettings);
}

bool SettingsOnScreen::settingsCome() {
    return eventually([] {
        const auto frame = settings();
        return frame && X11Windows().hasKeyboard(*frame);
    });
}

bool SettingsOnScreen::settingsGo() {
    return eventually([] { return !settings().has_value(); });
}

int SettingsOnScreen::startWith(const QStringList& arguments) const {
    QProcess second;
    second.setProcessEnvironment(home.environment());
    second.start(TALVERA_PROGRAM, arguments);
    return second.waitForFinished(30000) ? second.exitCode() : -1;
}

void SettingsOnScreen::openSettings(const QString& section) {
    const auto arguments = section.isEmpty() ? QStringList{"--settings"} : QStringList{"--settings", section};
    ASSERT_EQ(startWith(arguments), 0);
    ASSERT_TRUE(settingsCome());
}

void SettingsOnScreen::closeSettings() {
    keys.tap(Key::escape);
    ASSERT_TRUE(settingsGo());
}

void SettingsOnScreen::tap(int evdevKey) {
    keys.tap(Key::onX(evdevKey));
}

void SettingsOnScreen::tapWithControl(int evdevKey) {
    keys.press(Key::leftControl);
    tap(evdevKey);
    keys.release(Key::leftControl);
}

bool SettingsOnScreen::comesToBe(const QString& role, const QString& name, const QString& state) const {
    return eventually([&] {
        const auto found = ScreenReader::find(agent->pid(), role, name);
        return found && found->is(state);
    });
}

bool SettingsOnScreen::goesAway(const QString& name) const {
    return eventually([&] { return !ScreenReader::find(agent->pid(), anyRole, name); });
}

void SettingsOnScreen::choose(const QString& control, const QString& option) {
    clickOn("combo box", control);
    clickOn("list item", option);
}

std::optional<ScreenReader::Element> SettingsOnScreen::focused() const {
    std::optional<ScreenReader::Element> found;
    for (const auto& element : ScreenReader::read(agent->pid())) {
        if (element.is("focused"))
            found = element; // the innermost comes last
    }
    return found;
}

ScreenReader::Element SettingsOnScreen::tabOn(const QString& from) {
    tap(KEY_TAB);
    std::optional<ScreenReader::Element> now;
    const bool goesOn = eventually([&] {
        now = focused();
        return now && now->name != from;
    });
    if (!goesOn)
        throw std::runtime_error("the Tab key doesn't go on from " + from.toStdString());
    return *now;
}

void SettingsOnScreen::tabTo(const QString& name) {
    constexpr int more = 24; // than a section and the sidebar have controls
    const auto start = focused();
    auto now = start ? start->name : QString();
    for (int i = 0; i < more && now != name; ++i)
        now = tabOn(now).name;
    if (now != name)
        throw std::runtime_error("the Tab key doesn't get to " + name.toStdString());
}

void SettingsOnScreen::chooseByKey(const QString& control, int evdevKey) {
    tabTo(control);
    for (const auto key : {KEY_SPACE, evdevKey, KEY_ENTER})
        tap(key);
}

void SettingsOnScreen::expectTyped(const QString& written, const Samples& speech) {
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(speech);
    EXPECT_TRUE(editor.waitForText(written)) << editor.text().toStdString();
    agent->await("menu idle");
}

} // namespace talvera::test
