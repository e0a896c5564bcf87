// SPDX-License-Identifier: MIT
#include "platform/absent/NoPanelDesktop.h"

#include <QWindow>

namespace talvera {

void NoPanelDesktop::activate(QWindow& window) {
    window.requestActivate();
}

} // namespace talvera
