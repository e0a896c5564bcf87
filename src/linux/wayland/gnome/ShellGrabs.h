// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/gnome/ShellBus.h"
#include "linux/wayland/gnome/shellAccelerators.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace talvera {

/// Has GNOME Shell keep keys for us and tell us of them. Never waits for it. Main thread, with an event loop.
class ShellGrabs final : public QObject {
    Q_OBJECT

public:
    using Told = std::function<void(const ShellAccelerator& accelerator, bool isPress)>;

    explicit ShellGrabs(std::shared_ptr<const ShellBus> bus);
    /// The keys are the applications' again.
    ~ShellGrabs() override;

    Told onKey;
    /// The Shell has granted or refused something.
    std::function<void()> onAnswer;

    /// Keeps these and nothing else, as far as the Shell grants it.
    void hold(const std::set<ShellAccelerator>& wanted);

    /// Nothing as long as the Shell hasn't answered.
    std::optional<bool> isGranted(const ShellAccelerator& accelerator) const;

    /// Nothing is asked for before the extension has come. When it goes all keys go with it.
    void extensionCame();
    void extensionWent();
    /// Asks once more for what was refused.
    void askForRefused();

private Q_SLOTS:
    void pressed(uint action);
    void released(uint action);

private:
    struct Grab {
        bool isAsked = false;         ///< and not yet answered
        std::optional<uint> action{}; ///< 0: refused; nothing: not known
    };

    void ask(const ShellAccelerator& accelerator);
    void answered(const ShellAccelerator& accelerator, std::optional<uint> action);
    void tell(uint action, bool isPress);

    const std::shared_ptr<const ShellBus> m_bus;
    std::map<ShellAccelerator, Grab> m_grabs;
    bool m_isExtensionThere = false;
    int m_extension = 0; ///< counts them: answers of former ones are stale
};

} // namespace talvera
