// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11CapsLock.h"

#include "linux/x11/server/serverNotes.h"

#include <utility>

namespace talvera {

void X11CapsLock::press() {
    m_endsWithRelease = std::exchange(m_isOn, true);
}

void X11CapsLock::release() {
    if (std::exchange(m_endsWithRelease, false))
        m_isOn = false;
}

bool X11CapsLock::isOn() {
    if (const auto state = serverState())
        m_isOn = *state;
    return m_isOn;
}

std::optional<bool> X11CapsLock::serverState() {
    // Typing writes its note before it lifts the lock and erases it after it has put the lock back. So the
    // state that lies between two answers without a note is that of the user. The keyboard extension could
    // tell the state as well, but servers keep new modifier maps from connections that use it.
    const auto askNote = [this] {
        return m_connection.askProperty(m_connection.root(), serverNotes::typing, 1);
    };
    const auto noteBefore = askNote();
    const auto pointer = xcb_query_pointer(m_connection.get(), m_connection.root());
    const auto noteAfter = askNote();

    const auto isLifted = [this](const X11PropertyQuestion& question) {
        const auto items = m_connection.read(question).items();
        return !items.empty() && (items.front() & XCB_MOD_MASK_LOCK) != 0;
    };
    const bool wasLifted = isLifted(noteBefore);
    const auto state = m_connection.reply<xcb_query_pointer_reply_t>(pointer);
    const bool isLiftedNow = isLifted(noteAfter);
    if (!state || wasLifted || isLiftedNow)
        return std::nullopt;
    return (state->mask & XCB_MOD_MASK_LOCK) != 0;
}

} // namespace talvera
