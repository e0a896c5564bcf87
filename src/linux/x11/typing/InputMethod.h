// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <sys/types.h>

namespace talvera {

class X11Connection;

/// What an input method (ibus, fcitx and their like) that stands between the keyboard and the applications
/// may do to what we type.
enum class InputMethod {
    None,
    Composes, ///< takes letters of a layout for the user's own, and composes something else of them
    Rewrites, ///< also puts the punctuation of its language in the place of any other, whatever the key
};

/// The one that has announced itself at the X server, as all do for programs that know no other way to them.
InputMethod inputMethod(X11Connection& connection);

/// Whether the program has a module of its own that talks to such a method. Others send each key there by
/// way of the X server and look its symbol up when it comes back. By then the key may have another one, and
/// of two that come back together Xlib reads the last one first. True when no method's process is known.
bool talksToInputMethods(X11Connection& connection, pid_t process);

/// The processes on this machine that such methods consist of; none that are our own.
std::set<pid_t> inputMethodProcesses(X11Connection& connection);

} // namespace talvera
