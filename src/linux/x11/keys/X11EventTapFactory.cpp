// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11EventTapFactory.h"

#include "linux/keyboard/KeyEventMailbox.h"
#include "linux/x11/keys/X11EventTap.h"
#include "linux/x11/keys/X11KeyListener.h"

#include <algorithm>
#include <utility>

namespace talvera {

X11EventTapFactory::X11EventTapFactory(MainActor& mainActor, Duration bound, std::string display)
    : m_display(std::move(display))
    , m_mailbox(std::make_shared<KeyEventMailbox>(mainActor, bound,
                                                  [this](const KeyEvent& event) { deliver(event); })) {}

X11EventTapFactory::~X11EventTapFactory() {
    m_listener.reset();
    m_mailbox->close();
}

std::unique_ptr<EventTap> X11EventTapFactory::create(EventTap::Callback callback) {
    if (!m_listener)
        m_listener = X11KeyListener::start(m_display, m_mailbox);
    if (!m_listener)
        return nullptr;
    return std::make_unique<X11EventTap>(*this, std::move(callback));
}

WatchResult X11EventTapFactory::listen(const X11EventTap* about) {
    std::vector<KeyInterest> interests;
    std::optional<std::size_t> asked;
    for (const auto* tap : m_taps) {
        if (!tap->m_isEnabled || !tap->m_interest)
            continue;
        if (tap == about)
            asked = interests.size();
        interests.push_back(*tap->m_interest);
    }
    const auto results = m_listener->listenFor(interests);
    return asked ? results.at(*asked) : WatchResult::Watching;
}

void X11EventTapFactory::deliver(const KeyEvent& event) {
    if (event.type == KeyEventType::TapDisabledByTimeout) {
        tellOfTimeout();
        return;
    }
    const std::vector newestFirst(m_taps.rbegin(), m_taps.rend());
    for (auto* tap : newestFirst) {
        if (tap->isWaitingFor(event) && tap->m_callback(event) == Verdict::Swallow)
            return;
    }
}

void X11EventTapFactory::tellOfTimeout() {
    std::vector<X11EventTap*> disabled;
    for (auto* tap : m_taps) {
        if (std::exchange(tap->m_isEnabled, false))
            disabled.push_back(tap);
    }
    for (auto* tap : disabled)
        tap->m_callback({.type = KeyEventType::TapDisabledByTimeout});
}

} // namespace talvera
