// SPDX-License-Identifier: MIT
#include "RealKeyboard.h"

#include <QEventLoop>

namespace talvera::test {

RealKeyboard::RealKeyboard(Duration bound)
    : m_taps(m_actor, X11Server(), bound)
    , m_barrier(m_taps.create([](const KeyEvent&) { return Verdict::Pass; })) {}

void RealKeyboard::settle() {
    m_window.settleServer();
    m_barrier->watchNothing(); // answered by the tap's thread when it has read all there is
    bool isTold = false;
    m_actor.post([&isTold] { isTold = true; });
    run([&isTold] { return isTold; });
}

void RealKeyboard::run(const std::function<bool()>& done) {
    while (!done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

bool RealKeyboard::canBeGrabbed(XKeycode key, std::uint16_t modifiers) {
    const auto other = X11Server().connect();
    const auto request =
        xcb_grab_key_checked(other->get(), 0, other->root(), modifiers, static_cast<xcb_keycode_t>(key),
                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XcbPtr<xcb_generic_error_t> refusal(xcb_request_check(other->get(), request));
    return refusal == nullptr;
}

} // namespace talvera::test
