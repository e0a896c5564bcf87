// SPDX-License-Identifier: MIT
#include "WaylandTools.h"

#include "TypingTools.h"

#include <QProcess>

#include <stdexcept>
#include <string>

namespace talvera::test {

XProgramsOnly::XProgramsOnly() {
    ::qputenv("GDK_BACKEND", "x11");
    ::qputenv("QT_QPA_PLATFORM", "xcb");
}

XProgramsOnly::~XProgramsOnly() {
    ::qunsetenv("GDK_BACKEND");
    ::qunsetenv("QT_QPA_PLATFORM");
}

void tellSway(const QString& command) {
    if (QProcess::execute("swaymsg", {"-q", command}) != 0)
        throw std::runtime_error("sway doesn't do: " + command.toStdString());
}

QString selection(Selection selection) {
    const std::string read = selection == Selection::Primary ? "wl-paste -p" : "wl-paste";
    const std::string format = "'text/plain;charset=utf-8'";
    return QString::fromStdString(outputOf("{ " + read + " -l | grep -qx " + format + " && " + read +
                                           " -n -t " + format + "; } 2>/dev/null"));
}

} // namespace talvera::test
