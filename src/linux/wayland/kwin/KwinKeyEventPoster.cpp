// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinKeyEventPoster.h"

#include <chrono>
#include <thread>
#include <utility>

#include <linux/input-event-codes.h>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds focusPoll{5};
// For a window that comes up and goes at once, and for the moment when no window has the focus.
constexpr milliseconds elsewherePatience{200};
constexpr milliseconds nobodyPatience{1000};

class KwinTarget final : public TypingTarget {
public:
    explicit KwinTarget(std::optional<KwinWindow> window)
        : m_window(std::move(window)) {}

    const std::optional<KwinWindow>& window() const { return m_window; }

private:
    std::optional<KwinWindow> m_window; ///< nothing: no window had the keyboard
};

class NothingTyped final : public TypingSession {
public:
    PostResult post(qsizetype, KeyPhase) override { return PostResult::NotMakeable; }
};

} // namespace

KwinKeyEventPoster::KwinKeyEventPoster(std::shared_ptr<KwinKeyboard> keyboard,
                                       std::shared_ptr<KwinWindows> windows)
    : m_keyboard(std::move(keyboard))
    , m_windows(std::move(windows)) {}

TypingTargetPtr KwinKeyEventPoster::focusedTarget() {
    return std::make_shared<KwinTarget>(m_windows->active());
}

std::unique_ptr<TypingSession> KwinKeyEventPoster::beginTyping(const QStringList&, const TypingTargetPtr&) {
    return std::make_unique<NothingTyped>();
}

/// All of it goes to KWin at once, and its end with it: KWin keeps what a program has pressed that dies
/// meanwhile.
PostResult KwinKeyEventPoster::postPaste(KeyPhase phase, const TypingTargetPtr& target) {
    if (phase == KeyPhase::Up)
        return PostResult::Posted;
    if (const auto why = obstacle(target))
        return *why;
    const auto keyboard = m_keyboard->get();
    if (!keyboard)
        return PostResult::CutOff;
    // Nobody tells which of them are held; to let go one that isn't changes nothing, nor does the user's own
    // letting go afterwards.
    for (const auto key : {KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL, KEY_LEFTALT,
                           KEY_RIGHTALT, KEY_LEFTMETA, KEY_RIGHTMETA})
        keyboard->set(static_cast<std::uint32_t>(key), false);
    keyboard->set(KEY_LEFTSHIFT, true);
    keyboard->set(KEY_INSERT, true);
    keyboard->set(KEY_INSERT, false);
    keyboard->set(KEY_LEFTSHIFT, false);
    return keyboard->finish() ? PostResult::Posted : PostResult::CutOff;
}

std::optional<PostResult> KwinKeyEventPoster::obstacle(const TypingTargetPtr& target) const {
    const auto* wanted = dynamic_cast<const KwinTarget*>(target.get());
    for (const auto start = Clock::now();; std::this_thread::sleep_for(focusPoll)) {
        const auto look = m_windows->look();
        if (!look)
            return PostResult::CutOff;
        if (wanted == nullptr)
            return std::nullopt;
        if (!wanted->window()) // then and there no window could have been meant
            return PostResult::TargetLost;
        if (look->active == wanted->window())
            return std::nullopt;
        if (Clock::now() - start >= (look->active ? elsewherePatience : nobodyPatience))
            return PostResult::TargetLost;
    }
}

} // namespace talvera
