// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinGuard.h"

#include "linux/support/applicationId.h"

#include <string>

namespace talvera {

namespace {

/// The order is a list of words: a script's name behind an "s", an action's behind an "a". Nothing waits for
/// KWin: what the bus has been handed comes before what an agent that is started next will say. KWin isn't
/// called where it has gone, as the bus would start another server of shortcuts in its place.
constexpr auto program = R"sh(
is_there() {
    dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / \
        org.freedesktop.DBus.NameHasOwner "string:$1" | grep -q true
}
for word in $last; do
    case $word in
    a*) is_there org.kde.kglobalaccel && dbus-send --session --type=method_call --dest=org.kde.kglobalaccel /kglobalaccel \
            org.kde.KGlobalAccel.unregister "string:$1" "string:${word#a}" ;;
    s*) is_there org.kde.KWin && dbus-send --session --type=method_call --dest=org.kde.KWin /Scripting \
            org.kde.kwin.Scripting.unloadScript "string:${word#s}" ;;
    esac
done
)sh";

/// One guard for each session bus.
QByteArray guardName() {
    const auto bus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    return "kwin:" + (bus.isEmpty() ? qgetenv("XDG_RUNTIME_DIR") : bus);
}

} // namespace

KwinGuard::KwinGuard()
    : m_guard(guardName(), program, {std::string(applicationId)}) {}

void KwinGuard::guardShortcuts(const QStringList& actions) {
    m_actions = actions;
    order();
}

void KwinGuard::guardScripts(const QStringList& names) {
    m_scripts = names;
    order();
}

void KwinGuard::order() {
    QStringList words;
    for (const auto& action : m_actions)
        words << u'a' + action;
    for (const auto& script : m_scripts)
        words << u's' + script;
    m_guard.afterOurDeath(words.join(u' ').toUtf8());
}

} // namespace talvera
