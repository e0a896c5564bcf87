// SPDX-License-Identifier: MIT
#include "linux/x11/typing/InputMethod.h"

#include "linux/support/processes.h"
#include "linux/x11/server/FocusedWindow.h"

#include <algorithm>
#include <string>
#include <unistd.h>
#include <vector>

namespace talvera {

namespace {

struct Announced {
    xcb_atom_t name;
    xcb_window_t window;
};

std::vector<Announced> announcedMethods(X11Connection& connection) {
    std::vector<Announced> methods;
    for (const xcb_atom_t name : connection.property(connection.root(), connection.atom("XIM_SERVERS"))) {
        // One that has ended leaves its name.
        if (const xcb_window_t window = connection.selectionOwner(name); window != XCB_WINDOW_NONE)
            methods.push_back({name, window});
    }
    return methods;
}

/// What the names of a method's programs have in common: "ibus" of "ibus-x11".
std::string familyName(pid_t process) {
    const std::string name = processName(process);
    return name.substr(0, name.find('-'));
}

/// The processes that have announced themselves, but for our own.
std::set<pid_t> gates(X11Connection& connection) {
    std::set<pid_t> processes;
    for (const Announced& method : announcedMethods(connection)) {
        if (const pid_t gate = processOfWindow(connection, method.window); gate != 0 && gate != ::getpid())
            processes.insert(gate);
    }
    return processes;
}

} // namespace

InputMethod inputMethod(X11Connection& connection) {
    auto found = InputMethod::None;
    for (const Announced& method : announcedMethods(connection)) {
        if (method.name == connection.atom("@server=fcitx"))
            return InputMethod::Rewrites;
        found = InputMethod::Composes;
    }
    return found;
}

bool talksToInputMethods(X11Connection& connection, pid_t process) {
    const auto methods = gates(connection);
    const std::string loaded = methods.empty() ? std::string() : mappedFiles(process);
    return std::ranges::all_of(methods, [&](pid_t gate) {
        const std::string family = familyName(gate);
        return !family.empty() && (loaded.find("/lib" + family) != std::string::npos ||
                                   loaded.find("/im-" + family) != std::string::npos);
    });
}

std::set<pid_t> inputMethodProcesses(X11Connection& connection) {
    std::set<pid_t> processes;
    for (const pid_t gate : gates(connection)) {
        // What stands at the X server is often a mere gate to a daemon, which starts the engines.
        for (const pid_t process : allProcesses()) {
            if (::getpgid(process) == ::getpgid(gate) && familyName(process) == familyName(gate))
                processes.insert(process);
        }
    }
    return processes.empty() ? processes : withDescendants(processes);
}

} // namespace talvera
