// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/TrayIcon.h"

namespace talvera::test {

/// An icon in a tray that is there when the test says so.
class FakeTrayIcon final : public TrayIcon {
public:
    QString symbol;
    QString title;
    bool shown = false;
    bool trayIsThere = true;
    QRect place{1000, 0, 24, 24};

    void setSymbol(const QString& name) override { symbol = name; }
    void setTitle(const QString& text) override { title = text; }
    void setShown(bool isShown) override { shown = isShown; }
    bool hasTray() const override { return trayIsThere; }
    std::optional<QRect> frame() override {
        return shown && trayIsThere ? std::optional(place) : std::nullopt;
    }
};

} // namespace talvera::test
