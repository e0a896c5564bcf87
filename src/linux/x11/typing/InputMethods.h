// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

class X11Connection;

/// Whether an input method (ibus, fcitx and their like) stands between the keyboard and the applications, or
/// may. It would take letters of ours for the user's own and compose something else of them. One that is
/// there has announced itself at the X server, for programs that know no other way to it.
bool isInputMethodThere(X11Connection& connection);

} // namespace talvera
