// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/DesktopAppearance.h"

#include <QObject>

class QDBusVariant;

namespace talvera {

/// Light or dark as the desktop portal tells it, and as the toolkit's palette shows it where there is no
/// portal or the user has no wish. Followed live. The first answer comes later, through the event loop.
class PortalAppearance final : public QObject, public DesktopAppearance {
    Q_OBJECT
public:
    PortalAppearance();
    ~PortalAppearance() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void askPortal();
    void apply(const QVariant& answer);
    void update();

    uint m_scheme; ///< the portal's word
};

} // namespace talvera
