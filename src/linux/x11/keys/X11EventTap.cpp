// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11EventTap.h"

#include "linux/x11/keys/X11EventTapFactory.h"

namespace talvera {

X11EventTap::X11EventTap(X11EventTapFactory& factory, Callback callback)
    : m_factory(factory)
    , m_callback(std::move(callback)) {
    m_factory.m_taps.push_back(this);
}

X11EventTap::~X11EventTap() {
    std::erase(m_factory.m_taps, this);
    m_factory.listen();
}

void X11EventTap::setEnabled(bool enabled) {
    m_isEnabled = enabled;
    m_factory.listen();
}

WatchResult X11EventTap::watchChord(const KeyChord& chord) {
    return watch(KeyInterest(chord));
}

WatchResult X11EventTap::watchKey(std::uint16_t keyCode) {
    return watch(KeyInterest(keyCode));
}

void X11EventTap::watchNothing() {
    watch(std::nullopt);
}

WatchResult X11EventTap::watch(const std::optional<KeyInterest>& interest) {
    m_interest = interest;
    return m_factory.listen(this);
}

bool X11EventTap::isWaitingFor(const KeyEvent& event) const {
    if (!m_isEnabled || !m_interest)
        return false;
    if (const auto* chord = std::get_if<KeyChord>(&*m_interest))
        return event.type != KeyEventType::FlagsChanged && event.keyCode == chord->keyCode;
    return event.type == KeyEventType::FlagsChanged && event.keyCode == std::get<std::uint16_t>(*m_interest);
}

} // namespace talvera
