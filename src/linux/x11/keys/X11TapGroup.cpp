// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11TapGroup.h"

#include "linux/keyboard/KeyEventMailbox.h"
#include "linux/x11/keys/X11KeyListener.h"

#include <utility>

namespace talvera {

bool X11Tap::isWaitingFor(const KeyEvent& event) const {
    if (!isEnabled || !interest)
        return false;
    if (const auto* chord = chordOf(*interest))
        return event.type != KeyEventType::FlagsChanged && event.keyCode == chord->keyCode;
    return event.keyCode == std::get<VirtualKey>(*interest) ? event.type == KeyEventType::FlagsChanged
                                                            : isPress(event);
}

X11TapGroup::X11TapGroup(MainActor& mainActor, X11Server server, Duration bound)
    : m_server(std::move(server))
    , m_mailbox(std::make_shared<KeyEventMailbox>(mainActor, bound,
                                                  [this](const KeyEvent& event) { deliver(event); })) {}

X11TapGroup::~X11TapGroup() {
    m_listener.reset();
    m_mailbox->close();
}

std::shared_ptr<X11Tap> X11TapGroup::add(EventTap::Callback callback) {
    if (isBroken())
        m_listener = X11KeyListener::start(m_server, m_mailbox);
    if (!m_listener)
        return nullptr;
    auto tap = std::make_shared<X11Tap>();
    tap->callback = std::move(callback);
    return m_taps.emplace_back(std::move(tap));
}

void X11TapGroup::remove(const std::shared_ptr<X11Tap>& tap) {
    tap->isEnabled = false; // it may be among those that are just being told of an event
    std::erase(m_taps, tap);
    listen();
}

WatchResult X11TapGroup::listen(const X11Tap* about) {
    std::vector<KeyInterest> interests;
    std::optional<std::size_t> asked;
    for (const auto& tap : m_taps) {
        if (!tap->isEnabled || !tap->interest)
            continue;
        if (tap.get() == about)
            asked = interests.size();
        interests.push_back(*tap->interest);
    }
    if (!m_listener)
        return WatchResult::Unavailable;
    const auto results = m_listener->listenFor(interests);
    return asked ? results.at(*asked) : WatchResult::Watching;
}

bool X11TapGroup::isBroken() const {
    return !m_listener || m_listener->hasEnded();
}

void X11TapGroup::deliver(const KeyEvent& event) {
    if (event.type == KeyEventType::TapDisabledByTimeout) {
        reportTimeout();
        return;
    }
    const std::vector newestFirst(m_taps.rbegin(), m_taps.rend());
    for (const auto& tap : newestFirst) {
        if (tap->isWaitingFor(event) && tap->callback(event) == Verdict::Swallow)
            return;
    }
}

void X11TapGroup::reportTimeout() {
    std::vector<std::shared_ptr<X11Tap>> disabled;
    for (const auto& tap : m_taps) {
        if (std::exchange(tap->isEnabled, false))
            disabled.push_back(tap);
    }
    for (const auto& tap : disabled)
        tap->callback({.type = KeyEventType::TapDisabledByTimeout});
}

} // namespace talvera
