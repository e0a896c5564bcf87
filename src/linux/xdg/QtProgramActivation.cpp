// SPDX-License-Identifier: MIT
#include "linux/xdg/QtProgramActivation.h"

#include <QGuiApplication>

#include <utility>

namespace talvera {

QtProgramActivation::QtProgramActivation() {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &m_connection,
                     [this](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             m_activations.set({});
                     });
}

Subscription QtProgramActivation::observe(std::function<void()> activated) {
    return m_activations.observe([activated = std::move(activated)](Activated) { activated(); });
}

} // namespace talvera
