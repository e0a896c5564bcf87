// SPDX-License-Identifier: MIT
#include "linux/xdg/DesktopSettingsPanels.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <array>

namespace talvera {

namespace {

using Panel = SettingsPanels::Panel;

/// Where a desktop has its panels; of a program's old and new name the new one first.
struct Panels {
    const char* desktop; ///< empty: on every desktop
    Panel panel;
    const char* command;
};

constexpr std::array table{
    Panels{"GNOME", Panel::Microphone, "gnome-control-center sound"},
    Panels{"GNOME", Panel::Accessibility, "gnome-control-center universal-access"},
    Panels{"Unity", Panel::Microphone, "unity-control-center sound"},
    Panels{"Unity", Panel::Microphone, "gnome-control-center sound"},
    Panels{"Unity", Panel::Accessibility, "unity-control-center universal-access"},
    Panels{"Unity", Panel::Accessibility, "gnome-control-center universal-access"},
    Panels{"Budgie", Panel::Microphone, "budgie-control-center sound"},
    Panels{"Budgie", Panel::Microphone, "gnome-control-center sound"},
    Panels{"Budgie", Panel::Accessibility, "budgie-control-center universal-access"},
    Panels{"Budgie", Panel::Accessibility, "gnome-control-center universal-access"},
    Panels{"KDE", Panel::Microphone, "systemsettings kcm_pulseaudio"},
    Panels{"KDE", Panel::Microphone, "systemsettings5 kcm_pulseaudio"},
    Panels{"KDE", Panel::Microphone, "kcmshell6 kcm_pulseaudio"},
    Panels{"KDE", Panel::Microphone, "kcmshell5 kcm_pulseaudio"},
    Panels{"KDE", Panel::Accessibility, "systemsettings kcm_access"},
    Panels{"KDE", Panel::Accessibility, "systemsettings5 kcm_access"},
    Panels{"KDE", Panel::Accessibility, "kcmshell6 kcm_access"},
    Panels{"KDE", Panel::Accessibility, "kcmshell5 kcmaccess"},
    Panels{"XFCE", Panel::Microphone, "pavucontrol --tab=4"},
    Panels{"XFCE", Panel::Microphone, "xfce4-mixer"},
    Panels{"XFCE", Panel::Accessibility, "xfce4-accessibility-settings"},
    Panels{"MATE", Panel::Microphone, "mate-volume-control --page=input"},
    Panels{"MATE", Panel::Accessibility, "mate-at-properties"},
    Panels{"X-Cinnamon", Panel::Microphone, "cinnamon-settings sound"},
    Panels{"X-Cinnamon", Panel::Accessibility, "cinnamon-settings accessibility"},
    Panels{"LXQt", Panel::Microphone, "pavucontrol-qt --tab=4"},
    Panels{"LXQt", Panel::Accessibility, "lxqt-config"},
    Panels{"Deepin", Panel::Microphone, "dde-control-center -m sound"},
    Panels{"Pantheon", Panel::Microphone, "io.elementary.switchboard settings://sound"},
    Panels{"Pantheon", Panel::Accessibility, "io.elementary.switchboard settings://universal-access"},
    Panels{"GNOME", Panel::Keyboard, "gnome-control-center keyboard"},
    Panels{"Unity", Panel::Keyboard, "unity-control-center keyboard"},
    Panels{"Unity", Panel::Keyboard, "gnome-control-center keyboard"},
    Panels{"Budgie", Panel::Keyboard, "budgie-control-center keyboard"},
    Panels{"Budgie", Panel::Keyboard, "gnome-control-center keyboard"},
    Panels{"KDE", Panel::Keyboard, "systemsettings kcm_keyboard"},
    Panels{"KDE", Panel::Keyboard, "systemsettings5 kcm_keyboard"},
    Panels{"KDE", Panel::Keyboard, "kcmshell6 kcm_keyboard"},
    Panels{"KDE", Panel::Keyboard, "kcmshell5 kcm_keyboard"},
    Panels{"XFCE", Panel::Keyboard, "xfce4-keyboard-settings"},
    Panels{"MATE", Panel::Keyboard, "mate-keyboard-properties"},
    Panels{"X-Cinnamon", Panel::Keyboard, "cinnamon-settings keyboard"},
    Panels{"LXQt", Panel::Keyboard, "lxqt-config-input"},
    Panels{"Deepin", Panel::Keyboard, "dde-control-center -m keyboard"},
    Panels{"Pantheon", Panel::Keyboard, "io.elementary.switchboard settings://input/keyboard"},
    // What helps anywhere
    Panels{"", Panel::Microphone, "pavucontrol --tab=4"},
    Panels{"", Panel::Microphone, "pavucontrol-qt --tab=4"},
    Panels{"", Panel::Microphone, "pwvucontrol"},
    Panels{"", Panel::Microphone, "xfce4-mixer"},
};

QStringList words(const char* command) {
    return QString::fromLatin1(command).split(u' ');
}

/// Where nothing can be opened.
QString adviceFor(Panel panel) {
    switch (panel) {
    case Panel::Microphone:
        return QStringLiteral("[settings] allow the microphone in this desktop's sound settings");
    case Panel::Accessibility:
        return QStringLiteral("[settings] this session does not let Talvera watch and post keys");
    case Panel::Keyboard:
        return QStringLiteral("[settings] this desktop has no keyboard settings that are known here");
    case Panel::LanguageModel:
        return QStringLiteral("[settings] this machine has no on-device language model");
    }
    Q_UNREACHABLE();
}

} // namespace

DesktopSettingsPanels::Session DesktopSettingsPanels::session() {
    const auto list = [](const char* name) {
        return QFile::decodeName(qgetenv(name)).split(u':', Qt::SkipEmptyParts);
    };
    return {list("XDG_CURRENT_DESKTOP"), list("PATH")};
}

std::vector<QStringList> DesktopSettingsPanels::candidates(Panel panel, const QStringList& desktops) {
    std::vector<QStringList> commands;
    for (const auto& desktop : desktops + QStringList{QString()}) {
        for (const auto& row : table) {
            const bool matches =
                row.panel == panel && desktop.compare(QLatin1String(row.desktop), Qt::CaseInsensitive) == 0;
            const auto command = words(row.command);
            if (matches && std::find(commands.begin(), commands.end(), command) == commands.end())
                commands.push_back(command);
        }
    }
    return commands;
}

bool DesktopSettingsPanels::open(Panel panel) {
    for (const auto& command : candidates(panel, m_session.desktops)) {
        if (start(command))
            return true;
    }
    m_console.log(adviceFor(panel));
    return false;
}

/// The program goes on by itself, also when we end.
bool DesktopSettingsPanels::start(const QStringList& command) const {
    if (m_session.path.isEmpty()) // would be looked for in our own
        return false;
    const auto program = QStandardPaths::findExecutable(command.front(), m_session.path);
    return !program.isEmpty() && QProcess::startDetached(program, command.mid(1), QDir::homePath());
}

} // namespace talvera
