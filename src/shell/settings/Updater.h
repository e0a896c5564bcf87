// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "platform/system/UpdateService.h"

#include <QString>

#include <memory>

namespace talvera {

class DictationHUDController;
class Notifier;

/// Tells the user, who has asked for it, whether there is a newer version. Nothing is looked for unasked:
/// what keeps the system current does that for us too. Main thread only.
class Updater {
public:
    Updater(UpdateService& service, Notifier& notifier, DictationHUDController& hud);

    /// A question is under way.
    Published<bool> isChecking{false};

    /// Asks, and says the answer in a notification, or on the HUD where the desktop shows none. While a
    /// question is under way another one is not asked.
    void checkForUpdates();

private:
    void say(const UpdateAnswer& answer);

    UpdateService& m_service;
    Notifier& m_notifier;
    DictationHUDController& m_hud;
    Lifetime m_lifetime;
};

} // namespace talvera
