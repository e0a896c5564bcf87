// SPDX-License-Identifier: MIT
#pragma once

#include "PanelTest.h"

#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>

namespace talvera::test {

/// A test in which the user works with the settings window, by mouse and keyboard.
class SettingsOnScreen : public PanelTest {
protected:
    /// Where the window is, in pixels; nothing while it isn't on the screen.
    static std::optional<QRect> settings();
    /// Whether it comes to be there and has the keyboard.
    static bool settingsCome();
    static bool settingsGo();

    /// Starts the program once more with these arguments; its exit status.
    int startWith(const QStringList& arguments) const;
    /// Opens the window by a second start, at this section or at the first.
    void openSettings(const QString& section = {});
    void closeSettings();

    void tap(int evdevKey);
    void tapWithControl(int evdevKey);

    bool comesToBe(const QString& role, const QString& name, const QString& state) const;
    bool goesAway(const QString& name) const;

    /// Chooses in a list by the mouse.
    void choose(const QString& control, const QString& option);
    /// Goes on by the Tab key until this has the keyboard.
    void tabTo(const QString& name);
    /// Goes on by it once, from what is called so. What has the keyboard then, as screen readers say it.
    ScreenReader::Element tabOn(const QString& from);
    /// Chooses in a list by the keyboard: opens it, and takes what this key leads to.
    void chooseByKey(const QString& control, int evdevKey);
    /// What has the keyboard, as screen readers say it.
    std::optional<ScreenReader::Element> focused() const;

    /// Says this with an editor in front, and expects that in it.
    void expectTyped(const QString& written, const Samples& speech);
};

} // namespace talvera::test
