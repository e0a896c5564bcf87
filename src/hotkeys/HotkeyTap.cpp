// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyTap.h"

#include "concurrency/MainActor.h"
#include "platform/system/Console.h"

#include <utility>

namespace talvera {

HotkeyTap::HotkeyTap(MainActor& mainActor, EventTapFactory& taps, Console& console, QString owner)
    : m_mainActor(mainActor)
    , m_taps(taps)
    , m_console(console)
    , m_owner(std::move(owner)) {}

bool HotkeyTap::install(EventTap::Callback callback) {
    m_tap.reset();
    m_tap = m_taps.create(std::move(callback));
    if (!m_tap) {
        result.set(std::nullopt);
        m_console.log(
            m_owner +
            QStringLiteral(
                ": failed to create event tap — check Accessibility & Input Monitoring permissions."));
        return false;
    }
    m_tap->onResultChange = [this](WatchResult now) { tell(now); };
    m_tap->setEnabled(true);
    return true;
}

void HotkeyTap::watch(const Watch& watch) {
    if (m_tap)
        tell(watch(*m_tap));
}

void HotkeyTap::tell(WatchResult now) {
    if (now == WatchResult::ChordTaken)
        m_console.log(m_owner + QStringLiteral(": another program holds the bound shortcut."));
    else if (now == WatchResult::Unavailable)
        m_console.log(m_owner + QStringLiteral(": no keyboard has the bound key."));
    else if (now == WatchResult::ChordsOnly)
        m_console.log(m_owner + QStringLiteral(": this session tells of chords alone."));
    result.set(now);
    if (now == WatchResult::Watching)
        return;
    m_mainActor.post([this, now] {
        if (const auto refuse = onRefused) // a copy, which lives until the call ends
            refuse(now);
    });
}

void HotkeyTap::watchNothing() {
    if (m_tap)
        m_tap->watchNothing();
    result.set(std::nullopt);
}

void HotkeyTap::heard() {
    if (result.get() == WatchResult::ChordTaken)
        result.set(WatchResult::Watching);
    presses.set(presses.get() + 1);
}

bool HotkeyTap::recovers(const KeyEvent& event) {
    if (event.type != KeyEventType::TapDisabledByTimeout &&
        event.type != KeyEventType::TapDisabledByUserInput)
        return false;
    if (m_tap)
        m_tap->setEnabled(true);
    return true;
}

} // namespace talvera
