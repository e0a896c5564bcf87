// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11EventTap.h"

#include <utility>

namespace talvera {

X11EventTap::X11EventTap(X11TapGroup& group, std::shared_ptr<X11Tap> tap)
    : m_group(group)
    , m_tap(std::move(tap)) {}

X11EventTap::~X11EventTap() {
    m_group.remove(m_tap);
}

void X11EventTap::setEnabled(bool enabled) {
    m_tap->isEnabled = enabled;
    m_group.listen();
}

WatchResult X11EventTap::watchChord(const KeyChord& chord) {
    return watch(KeyInterest(chord));
}

WatchResult X11EventTap::watchStroke(const KeyChord& chord) {
    return watch(KeyInterest(KeyStroke{chord}));
}

WatchResult X11EventTap::watchKey(VirtualKey key) {
    return watch(KeyInterest(key));
}

void X11EventTap::watchNothing() {
    watch(std::nullopt);
}

WatchResult X11EventTap::watch(const std::optional<KeyInterest>& interest) {
    m_tap->interest = interest;
    return m_group.listen(m_tap.get());
}

} // namespace talvera
