// SPDX-License-Identifier: MIT
#include "linux/x11/windows/nativeWindow.h"

#include "linux/x11/server/X11Connection.h"

#include <QGuiApplication>
#include <QWindow>

namespace talvera {

xcb_window_t nativeWindow(QWindow& window) {
    window.create();
    if (const auto* toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        auto* const connection = toolkit->connection();
        const XcbPtr<xcb_get_input_focus_reply_t> workedOff(
            xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
    return static_cast<xcb_window_t>(window.winId());
}

} // namespace talvera
