// SPDX-License-Identifier: MIT
#include "linux/x11/windows/GrabFocusFilter.h"

#include "linux/x11/server/eventType.h"

#include <QCoreApplication>

namespace talvera {

GrabFocusFilter::GrabFocusFilter() {
    if (auto* application = QCoreApplication::instance())
        application->installNativeEventFilter(this);
}

bool GrabFocusFilter::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    const auto mode = [&event] { return reinterpret_cast<const xcb_focus_in_event_t&>(event).mode; };
    switch (talvera::eventType(event)) {
    case XCB_FOCUS_OUT:
        return mode() == XCB_NOTIFY_MODE_GRAB;
    case XCB_FOCUS_IN:
        return mode() == XCB_NOTIFY_MODE_UNGRAB;
    default:
        return false;
    }
}

} // namespace talvera
