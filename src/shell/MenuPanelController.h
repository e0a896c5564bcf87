// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

class AppSettings;
class MenuBarController;
class StatsStore;

/// The status item in the tray and the panel under it. Neither can be seen yet.
class MenuPanelController {
public:
    MenuPanelController(MenuBarController&, AppSettings&, StatsStore&) {}
};

} // namespace talvera
