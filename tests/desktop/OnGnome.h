// SPDX-License-Identifier: MIT
#pragma once

#include "OnWayland.h"
#include "linux/wayland/gnome/ShellBus.h"

namespace talvera::test {

/// A test in a GNOME session, where our extension of its Shell is switched on.
class OnGnome : public OnWayland {};

/// Has the Shell keep the hotkey for another program than the agent, as long as its connection lasts. 0 when
/// it is taken.
unsigned grabHotkey(const ShellBus& bus, const QString& accelerator = QStringLiteral("<Control><Alt>0x41"));
/// The Shell keeps the hotkey for somebody, with each set of further modifiers.
bool isHotkeyKept();

/// As the user does it in the Extensions app.
void switchExtension(bool isOn);

} // namespace talvera::test
