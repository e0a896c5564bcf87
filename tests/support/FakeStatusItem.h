// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/StatusItem.h"

namespace talvera::test {

/// An item that stands where the test puts it.
class FakeStatusItem final : public StatusItem {
public:
    QString symbol;
    QString toolTip;
    bool visible = false;
    bool hasTray = true;
    std::optional<QRect> place = QRect(1000, 0, 24, 24);

    void setSymbol(const QString& name) override { symbol = name; }
    void setToolTip(const QString& text) override { toolTip = text; }
    void setVisible(bool shown) override { visible = shown; }
    bool isSeen() const override { return visible && hasTray; }
    std::optional<QRect> frame() const override { return visible ? place : std::nullopt; }

    void click() {
        if (onClick)
            onClick();
    }
};

} // namespace talvera::test
