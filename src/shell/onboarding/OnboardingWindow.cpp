// SPDX-License-Identifier: MIT
#include "shell/onboarding/OnboardingWindow.h"

#include "concurrency/MainActor.h"
#include "shell/onboarding/OnboardingController.h"

#include <utility>

namespace talvera {

namespace {

constexpr Duration reactivateDelay = seconds(0.35);

} // namespace

OnboardingWindow::OnboardingWindow(MainActor& actor, OnboardingController& controller, Maker make)
    : m_actor(actor)
    , m_controller(controller)
    , m_make(std::move(make)) {
    m_controller.onFinished = [this] { close(); };
    m_controller.onReactivate = [this] { reactivate(); };
}

OnboardingWindow::~OnboardingWindow() {
    m_controller.onFinished = nullptr;
    m_controller.onReactivate = nullptr;
}

void OnboardingWindow::show() {
    if (!m_window) {
        m_controller.windowWillShow();
        m_window = m_make();
        m_window->onClosed = [this] { close(); };
    }
    m_window->bringToFront();
}

void OnboardingWindow::reactivate() {
    if (!m_window)
        return;
    m_window->bringToFront();
    if (m_pendingReactivate)
        m_pendingReactivate->cancel();
    const CancellationToken token;
    m_pendingReactivate = token;
    m_actor.start([this, owner = m_lifetime.token(), &actor = m_actor, token]() -> Task<void> {
        co_await actor.sleep(reactivateDelay, token);
        if (owner.isAlive() && !token.isCancelled() && m_window)
            m_window->bringToFront();
    });
}

/// It ends in a later turn, since one of its own buttons may have asked for this; or with this object, if the
/// program ends before that turn comes.
void OnboardingWindow::close() {
    if (!m_window)
        return;
    if (m_pendingReactivate)
        m_pendingReactivate->cancel();
    m_controller.windowWillClose();
    m_closed = std::move(m_window);
    m_actor.post(m_lifetime.ifAlive([this] { m_closed.reset(); }));
}

} // namespace talvera
