// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/WaylandKeyEventPoster.h"

#include "linux/wayland/typing/TypingKeymap.h"
#include "text/typeableCharacters.h"

#include <utility>
#include <vector>

#include <linux/input-event-codes.h>

namespace talvera {

namespace {

class WaylandTarget final : public TypingTarget {
public:
    explicit WaylandTarget(std::optional<std::int64_t> window)
        : m_window(window) {}

    const std::optional<std::int64_t>& window() const { return m_window; }

private:
    std::optional<std::int64_t> m_window; ///< nothing: no window had the keyboard
};

} // namespace

class WaylandKeyEventPoster::Session final : public TypingSession {
public:
    Session(WaylandKeyEventPoster& poster, const QStringList& chunks, TypingTargetPtr target)
        : m_poster(poster)
        , m_target(std::move(target)) {
        for (const auto& chunk : chunks) {
            m_starts.push_back(m_text.size());
            m_text += typeableCharacters(chunk);
        }
        m_starts.push_back(m_text.size());
    }
    ~Session() override { release(); }

    PostResult post(qsizetype index, KeyPhase phase) override {
        if (index < 0 || index + 1 >= static_cast<qsizetype>(m_starts.size()))
            return PostResult::NotMakeable;
        if (!release())
            return PostResult::CutOff;
        return phase == KeyPhase::Up ? PostResult::Posted : write(static_cast<std::size_t>(index));
    }

private:
    PostResult write(std::size_t chunk) {
        for (auto position = m_starts[chunk]; position < m_starts[chunk + 1]; ++position) {
            if (!release())
                return PostResult::CutOff;
            if (const auto obstacle = m_poster.obstacle(m_target))
                return *obstacle;
            const auto key = keyAt(position);
            if (!key)
                return PostResult::NotMakeable;
            if (!m_poster.m_keyboard->press(*key))
                return PostResult::CutOff;
            m_pressed = key;
        }
        return PostResult::Posted;
    }

    /// Where the present layout lacks the character, another one takes its place that has it and those behind.
    std::optional<std::uint32_t> keyAt(std::size_t position) {
        if (!m_keymap || !m_keymap->keyOf(m_text[position])) {
            m_keymap.emplace(std::u32string_view(m_text).substr(position));
            if (!m_poster.m_keyboard->useKeymap(*m_keymap))
                return std::nullopt;
        }
        return m_keymap->keyOf(m_text[position]);
    }

    bool release() {
        const auto pressed = std::exchange(m_pressed, std::nullopt);
        return !pressed || m_poster.m_keyboard->release(*pressed);
    }

    WaylandKeyEventPoster& m_poster;
    const TypingTargetPtr m_target;
    std::u32string m_text;
    std::vector<std::size_t> m_starts; ///< where each chunk begins, and where the last one ends
    std::optional<TypingKeymap> m_keymap;
    std::optional<std::uint32_t> m_pressed;
};

WaylandKeyEventPoster::WaylandKeyEventPoster(std::unique_ptr<WaylandConnection> connection,
                                             FocusedWindow focusedWindow)
    : m_connection(std::move(connection))
    , m_focusedWindow(std::move(focusedWindow))
    , m_keyboard(VirtualKeyboard::open(*m_connection)) {
    // The seat has a new keyboard, and clients hear of that long before the first key.
    if (m_keyboard)
        m_keyboard->useKeymap(TypingKeymap(U" "));
}

WaylandKeyEventPoster::~WaylandKeyEventPoster() = default;

TypingTargetPtr WaylandKeyEventPoster::focusedTarget() {
    return std::make_shared<WaylandTarget>(m_focusedWindow());
}

std::unique_ptr<TypingSession> WaylandKeyEventPoster::beginTyping(const QStringList& chunks,
                                                                  const TypingTargetPtr& target) {
    return std::make_unique<Session>(*this, chunks, target);
}

PostResult WaylandKeyEventPoster::postPaste(KeyPhase phase, const TypingTargetPtr& target) {
    if (phase == KeyPhase::Up) {
        const bool isUp = m_keyboard && m_keyboard->release(KEY_INSERT) && m_keyboard->setShift(false);
        return isUp ? PostResult::Posted : PostResult::CutOff;
    }
    if (const auto why = obstacle(target))
        return *why;
    const bool isDown = m_keyboard->useKeymap(TypingKeymap::ofPaste()) && m_keyboard->setShift(true) &&
                        m_keyboard->press(KEY_INSERT);
    return isDown ? PostResult::Posted : PostResult::CutOff;
}

std::optional<PostResult> WaylandKeyEventPoster::obstacle(const TypingTargetPtr& target) const {
    if (!m_keyboard || m_connection->isBroken())
        return PostResult::CutOff;
    const auto* wanted = dynamic_cast<const WaylandTarget*>(target.get());
    if (wanted != nullptr && wanted->window() != m_focusedWindow())
        return PostResult::TargetLost;
    return std::nullopt;
}

} // namespace talvera
