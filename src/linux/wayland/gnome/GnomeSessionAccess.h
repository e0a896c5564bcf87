// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/gnome/ShellView.h"
#include "platform/desktop/SessionAccess.h"

#include <memory>
#include <utility>

namespace talvera {

/// What a GNOME session lets us do: everything, where our extension of its Shell is switched on.
class GnomeSessionAccess final : public SessionAccess {
public:
    explicit GnomeSessionAccess(std::shared_ptr<ShellView> view)
        : m_view(std::move(view)) {}

    std::vector<SessionLack> lacks() override {
        switch (m_view->presence()) {
        case ShellView::Presence::NoShell:
            return {SessionLack::KnownSession};
        case ShellView::Presence::Off:
            return {SessionLack::ExtensionOff};
        case ShellView::Presence::UnknownToIt:
            return {SessionLack::ExtensionUnknown};
        case ShellView::Presence::Working:
            return {};
        }
        Q_UNREACHABLE();
    }

    bool give(SessionLack lack) override {
        if (lack != SessionLack::ExtensionOff)
            return false;
        m_view->switchExtensionOn();
        return true;
    }

    bool canWatchKeys() override { return m_view->presence() == ShellView::Presence::Working; }

private:
    const std::shared_ptr<ShellView> m_view;
};

} // namespace talvera
