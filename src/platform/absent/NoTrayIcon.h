// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/TrayIcon.h"

namespace talvera {

/// A desktop without a tray of the old kind.
class NoTrayIcon final : public TrayIcon {
public:
    void setSymbol(const QString&) override {}
    void setTitle(const QString&) override {}
    void setShown(bool) override {}
    bool hasTray() const override { return false; }
    std::optional<QRect> frame() override { return std::nullopt; }
};

} // namespace talvera
