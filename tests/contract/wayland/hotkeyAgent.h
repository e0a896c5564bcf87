// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <vector>

namespace talvera::test {

/// A process with nothing but taps on Ctrl+Alt+Space and F8: it says "ready", then "start" and "end" for each
/// press.
inline int runHotkeyAgent(EventTapFactory& taps) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::vector<std::unique_ptr<EventTap>> watching;
    for (const auto& chord :
         {KeyChord{KeyFlag::Control | KeyFlag::Option, VirtualKey::Space}, KeyChord{0, VirtualKey::F8}}) {
        watching.push_back(taps.create([](const KeyEvent& event) {
            std::puts(isPress(event) ? "start" : "end");
            return Verdict::Swallow;
        }));
        if (!watching.back())
            return 1;
        watching.back()->setEnabled(true);
        if (watching.back()->watchChord(chord) != WatchResult::Watching)
            return 1;
    }
    std::puts("ready");
    return QCoreApplication::exec();
}

} // namespace talvera::test
