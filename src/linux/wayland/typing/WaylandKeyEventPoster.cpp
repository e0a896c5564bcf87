// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/WaylandKeyEventPoster.h"

#include "text/typeableCharacters.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include <linux/input-event-codes.h>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint32_t shift = 1; ///< its bit in every keymap

constexpr milliseconds focusPoll{5};
constexpr milliseconds movePatience{200};
// For a window that comes up and goes at once, and for the moment when no window has the focus.
constexpr milliseconds elsewherePatience{200};
constexpr milliseconds nobodyPatience{1000};

class WaylandTarget final : public TypingTarget {
public:
    explicit WaylandTarget(std::optional<Toplevels::Window> window)
        : m_window(window) {}

    const std::optional<Toplevels::Window>& window() const { return m_window; }

private:
    std::optional<Toplevels::Window> m_window; ///< nothing: no window had the keyboard
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
        if (phase == KeyPhase::Up)
            return release();
        const auto chunk = static_cast<std::size_t>(index);
        auto result = release();
        for (auto position = m_starts[chunk]; position < m_starts[chunk + 1] && result == PostResult::Posted;
             ++position)
            result = write(position);
        return result;
    }

private:
    PostResult write(std::size_t position) {
        auto result = release();
        if (result == PostResult::Posted)
            result = m_poster.makeWritable(std::u32string_view(m_text).substr(position));
        if (result != PostResult::Posted)
            return result;
        const auto key = m_poster.m_keymap.keyOf(m_text[position]);
        if (!key)
            return PostResult::NotMakeable;
        result = m_poster.press(*key, m_target);
        if (result == PostResult::Posted)
            m_pressed = key;
        return result;
    }

    PostResult release() {
        const auto pressed = std::exchange(m_pressed, std::nullopt);
        return !pressed || m_poster.m_keyboard->release(*pressed) ? PostResult::Posted : PostResult::CutOff;
    }

    WaylandKeyEventPoster& m_poster;
    const TypingTargetPtr m_target;
    std::u32string m_text;
    std::vector<std::size_t> m_starts; ///< where each chunk begins, and where the last one ends
    std::optional<std::uint32_t> m_pressed;
};

std::unique_ptr<WaylandKeyEventPoster> WaylandKeyEventPoster::open(AwaitReading awaitReading,
                                                                   const std::string& display) {
    auto connection = std::make_unique<WaylandConnection>(display);
    auto keyboard = VirtualKeyboard::open(*connection);
    auto focus = Toplevels::open(std::make_unique<WaylandConnection>(display));
    if (!keyboard || !focus || !keyboard->useKeymap(TypingKeymap().xkb()))
        return nullptr;
    return std::unique_ptr<WaylandKeyEventPoster>(new WaylandKeyEventPoster(
        std::move(awaitReading), std::move(focus), std::move(connection), std::move(keyboard)));
}

WaylandKeyEventPoster::WaylandKeyEventPoster(AwaitReading awaitReading, std::unique_ptr<Toplevels> focus,
                                             std::unique_ptr<WaylandConnection> connection,
                                             std::unique_ptr<VirtualKeyboard> keyboard)
    : m_awaitReading(std::move(awaitReading))
    , m_focus(std::move(focus))
    , m_connection(std::move(connection))
    , m_keyboard(std::move(keyboard)) {}

WaylandKeyEventPoster::~WaylandKeyEventPoster() = default;

TypingTargetPtr WaylandKeyEventPoster::focusedTarget() {
    const auto start = Clock::now();
    auto look = m_focus->look();
    while (look && !look->window && Clock::now() - start < movePatience) {
        std::this_thread::sleep_for(focusPoll);
        look = m_focus->look();
    }
    return std::make_shared<WaylandTarget>(look ? look->window : std::nullopt);
}

std::unique_ptr<TypingSession> WaylandKeyEventPoster::beginTyping(const QStringList& chunks,
                                                                  const TypingTargetPtr& target) {
    releaseChord();
    return std::make_unique<Session>(*this, chunks, target);
}

PostResult WaylandKeyEventPoster::postPaste(KeyPhase phase, const TypingTargetPtr& target) {
    const auto released = releaseChord();
    if (phase == KeyPhase::Up || released != PostResult::Posted)
        return released;
    if (const auto why = obstacle(target))
        return *why;
    m_isChordDown = true;
    const bool isDown = m_keyboard->setModifiers(shift) && m_keyboard->press(KEY_INSERT);
    return isDown ? PostResult::Posted : PostResult::CutOff;
}

PostResult WaylandKeyEventPoster::releaseChord() {
    if (!std::exchange(m_isChordDown, false))
        return m_connection->isBroken() ? PostResult::CutOff : PostResult::Posted;
    const bool isUp = m_keyboard->release(KEY_INSERT) && m_keyboard->setModifiers(0);
    return isUp ? PostResult::Posted : PostResult::CutOff;
}

PostResult WaylandKeyEventPoster::makeWritable(std::u32string_view characters) {
    if (m_keymap.keyOf(characters.front()))
        return PostResult::Posted;
    auto next = m_keymap;
    if (next.makeRoomFor(characters) == TypingKeymap::Change::Replaced && m_awaitReading &&
        m_connection->roundTrip())
        m_awaitReading();
    if (!m_keyboard->useKeymap(next.xkb()))
        return m_connection->isBroken() ? PostResult::CutOff : PostResult::NotMakeable;
    m_keymap = std::move(next);
    return PostResult::Posted;
}

PostResult WaylandKeyEventPoster::press(std::uint32_t key, const TypingTargetPtr& target) {
    if (const auto why = obstacle(target))
        return *why;
    return m_keyboard->press(key) ? PostResult::Posted : PostResult::CutOff;
}

std::optional<PostResult> WaylandKeyEventPoster::obstacle(const TypingTargetPtr& target) {
    const auto* wanted = dynamic_cast<const WaylandTarget*>(target.get());
    for (const auto start = Clock::now();; std::this_thread::sleep_for(focusPoll)) {
        const auto look = m_focus->look();
        if (!look || m_connection->isBroken())
            return PostResult::CutOff;
        if (wanted == nullptr)
            return std::nullopt;
        if (!wanted->window()) // then and there no window could have been meant
            return PostResult::TargetLost;
        if (look->window == wanted->window())
            return std::nullopt;
        if (Clock::now() - start >= (look->window ? elsewherePatience : nobodyPatience))
            return PostResult::TargetLost;
    }
}

} // namespace talvera
