// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "linux/tray/StatusNotifierItem.h"
#include "linux/tray/StatusNotifierLink.h"
#include "platform/desktop/StatusItem.h"
#include "platform/desktop/TrayIcon.h"

#include <memory>
#include <optional>

namespace talvera {

/// Our item in whatever tray this desktop has: over D-Bus where a panel shows such items, else as an icon in
/// a tray of the old kind. Follows panels that come and go.
class TrayStatusItem final : public StatusItem {
public:
    /// How long a session may take until its tray is there.
    static constexpr Duration patience = seconds(10.0);

    TrayStatusItem(MainActor& actor, const SymbolPainter& painter, const QString& iconThemePath,
                   std::unique_ptr<TrayIcon> icon);
    ~TrayStatusItem() override;
    TrayStatusItem(const TrayStatusItem&) = delete;
    TrayStatusItem& operator=(const TrayStatusItem&) = delete;

    void setSymbol(const QString& name) override;
    void setToolTip(const QString& text) override;
    void setVisible(bool visible) override;
    bool isSeen() const override;
    std::optional<QRect> frame() const override;

private:
    bool hasTray() const;
    void choose();
    void clicked();

    MainActor& m_actor;
    StatusNotifierItem m_item;
    StatusNotifierLink m_link;
    const std::unique_ptr<TrayIcon> m_icon;
    std::optional<QPoint> m_clickPlace;           ///< of the last click that a panel told us of
    std::optional<MainActor::TimerId> m_patience; ///< once it is asked whether there is a tray
    bool m_visible = false;
};

} // namespace talvera
