// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayGuard.h"

#include <string>

namespace talvera {

namespace {

/// Bindings are taken away in the mode that has them; the user stays in the one where they are.
constexpr auto program = R"sh(
mode=$(swaymsg -s "$1" -rt get_binding_state | sed "$2")
exec swaymsg -q -s "$1" "mode default; $last; mode \"${mode:-default}\""
)sh";

/// Makes of sway's answer, which is JSON, the name of the mode as inFirstMode() quotes it.
constexpr auto quotedMode = R"sed(/"name": *"/!d
s/[^"]*"name": *"\(.*\)".*/\1/
s,\\/,/,g
s/\\"/"'"'"/g
s/\\\\/\\/g
s/\$/$$/g
)sed";

} // namespace

SwayGuard::SwayGuard(const QString& socket)
    : m_guard(socket.toLocal8Bit(), program, {socket.toLocal8Bit().toStdString(), quotedMode}) {}

} // namespace talvera
