// SPDX-License-Identifier: MIT
#include "core/CommandedHotkey.h"

#include "concurrency/MainActor.h"
#include "core/DictationController.h"
#include "persistence/AppSettings.h"

#include <algorithm>
#include <utility>

namespace talvera {

CommandedHotkey::CommandedHotkey(MainActor& actor, const AppSettings& settings,
                                 DictationController& dictation)
    : m_actor(actor)
    , m_settings(settings)
    , m_dictation(dictation) {}

void CommandedHotkey::press(Begun begun) {
    if (isOver(begun) || isRepeat())
        return;
    m_dictation.handlePressStart();
}

void CommandedHotkey::release(Begun begun) {
    m_released = std::max(m_released, begun);
    m_struck.reset();
    m_dictation.handlePressEnd();
}

void CommandedHotkey::toggle() {
    if (!isRepeat())
        m_dictation.handleToggle();
}

/// In tap mode a release means nothing, so that a press counts whatever has overtaken it.
bool CommandedHotkey::isOver(Begun begun) const {
    return !m_settings.hotkeyTapToToggle.get() && begun && m_released && *begun <= *m_released;
}

bool CommandedHotkey::isRepeat() {
    const auto now = m_actor.now();
    const auto before = std::exchange(m_struck, now);
    return before && now - *before <= repeatTime;
}

} // namespace talvera
