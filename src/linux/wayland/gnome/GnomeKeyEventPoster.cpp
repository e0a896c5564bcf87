// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/GnomeKeyEventPoster.h"

#include "text/typeableCharacters.h"

#include <thread>
#include <utility>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds focusPoll{5};
constexpr milliseconds answerPoll{20};
constexpr milliseconds movePatience{200};
// For a window that comes up and goes at once, for the moment when no window has the focus, and for a user
// who holds what would make another chord of the one that pastes.
constexpr milliseconds elsewherePatience{200};
constexpr milliseconds nobodyPatience{1000};
constexpr milliseconds heldPatience{1000};
// Programs tell the Shell of the field that has the focus some 10 ms after they have got it themselves.
constexpr milliseconds fieldPatience{200};
// Keys go round by the input method: Shift must not be up before Insert has come back from it.
constexpr milliseconds chordHold{40};

const auto pressPaste = QStringLiteral("PressPaste");

// To what is to be pasted the last one stands for keys that the user holds.
enum Answer : unsigned { Done = 0, WithoutFocus = 1, TakesNoText = 2 };

class GnomeTarget final : public TypingTarget {
public:
    explicit GnomeTarget(std::uint64_t window)
        : m_window(window) {}

    std::uint64_t window() const { return m_window; }

private:
    std::uint64_t m_window; ///< 0: no window had the keyboard
};

/// foot heeds a text only while nothing that it has told itself, such as where its cursor is now, is on its
/// way to the Shell. So it drops letters that come while it writes, and nobody hears of it.
bool dropsWhatItIsWritten(const QString& application) {
    return application.section(QLatin1Char('.'), -1).startsWith(QStringLiteral("foot"));
}

/// The window that a text belongs to: nothing where that is any window, 0 where there was none.
std::optional<std::uint64_t> windowOf(const TypingTargetPtr& target) {
    const auto* const known = dynamic_cast<const GnomeTarget*>(target.get());
    return known ? std::optional(known->window()) : std::nullopt;
}

} // namespace

class GnomeKeyEventPoster::Session final : public TypingSession {
public:
    Session(GnomeKeyEventPoster& poster, const QStringList& chunks, TypingTargetPtr target)
        : m_poster(poster)
        , m_chunks(chunks)
        , m_target(std::move(target)) {}

    PostResult post(qsizetype index, KeyPhase phase) override {
        if (index < 0 || index >= m_chunks.size())
            return PostResult::NotMakeable;
        if (phase == KeyPhase::Up) // no key is down
            return PostResult::Posted;
        const auto characters = typeableCharacters(m_chunks.at(index));
        const auto text = QString::fromUcs4(characters.data(), static_cast<qsizetype>(characters.size()));
        return text.isEmpty() ? PostResult::Posted : m_poster.write(text, m_target);
    }

private:
    GnomeKeyEventPoster& m_poster;
    const QStringList m_chunks;
    const TypingTargetPtr m_target;
};

GnomeKeyEventPoster::GnomeKeyEventPoster(std::shared_ptr<const ShellBus> bus,
                                         std::shared_ptr<const ShellView> view)
    : m_bus(std::move(bus))
    , m_view(std::move(view)) {}

TypingTargetPtr GnomeKeyEventPoster::focusedTarget() {
    const auto start = Clock::now();
    auto focus = m_view->focus();
    while (focus.window == 0 && m_view->presence() == ShellView::Presence::Working &&
           Clock::now() - start < movePatience) {
        std::this_thread::sleep_for(focusPoll);
        focus = m_view->focus();
    }
    return std::make_shared<GnomeTarget>(focus.window);
}

bool GnomeKeyEventPoster::isTypingFaithful(const TypingTargetPtr& target) {
    const auto wanted = windowOf(target);
    while (true) {
        const auto focus = m_bus->ask(QStringLiteral("Focus"), {});
        const auto window = focus ? focus->value(0).toULongLong() : 0;
        const bool takesText = focus && focus->value(3).toBool();
        // Where the text can't come to stand at all, typing will tell so.
        if (window == 0 || (wanted && *wanted != window))
            return true;
        if (dropsWhatItIsWritten(focus->value(2).toString()))
            return false;
        if (takesText)
            return true;
        if (Clock::now() - m_view->focusedSince() >= fieldPatience)
            return false;
        std::this_thread::sleep_for(answerPoll);
    }
}

std::unique_ptr<TypingSession> GnomeKeyEventPoster::beginTyping(const QStringList& chunks,
                                                                const TypingTargetPtr& target) {
    releaseChord();
    return std::make_unique<Session>(*this, chunks, target);
}

PostResult GnomeKeyEventPoster::postPaste(KeyPhase phase, const TypingTargetPtr& target) {
    const auto released = releaseChord();
    if (phase == KeyPhase::Up || released != PostResult::Posted)
        return released;
    m_chordDownIn = windowOf(target).value_or(0); // also if no answer comes: it may be pressed late
    const auto result = doInTarget(pressPaste, true, target);
    m_chordDownSince = Clock::now();
    if (result == PostResult::TargetLost)
        m_chordDownIn.reset();
    return result;
}

PostResult GnomeKeyEventPoster::write(const QString& text, const TypingTargetPtr& target) {
    return doInTarget(QStringLiteral("Commit"), text, target);
}

PostResult GnomeKeyEventPoster::releaseChord() {
    const auto window = std::exchange(m_chordDownIn, std::nullopt);
    if (!window)
        return PostResult::Posted;
    std::this_thread::sleep_until(m_chordDownSince + chordHold);
    const bool isAnswered =
        m_bus->ask(pressPaste, {QVariant::fromValue(qulonglong(*window)), false}).has_value();
    return isAnswered ? PostResult::Posted : PostResult::CutOff;
}

PostResult GnomeKeyEventPoster::doInTarget(const QString& method, const QVariant& what,
                                           const TypingTargetPtr& target) {
    const auto wanted = windowOf(target);
    if (wanted == 0U) // then and there no window could have been meant
        return PostResult::TargetLost;
    const auto window = QVariant::fromValue(qulonglong(wanted.value_or(0)));
    for (const auto start = Clock::now();; std::this_thread::sleep_for(answerPoll)) {
        const auto answer = m_bus->ask(method, {window, what});
        if (!answer)
            return PostResult::CutOff;
        const auto done = answer->value(0).toUInt();
        if (done == Answer::Done)
            return PostResult::Posted;
        auto patience = elsewherePatience;
        if (done == Answer::WithoutFocus && m_view->focus().window == 0)
            patience = nobodyPatience;
        else if (done == Answer::TakesNoText && method == pressPaste)
            patience = heldPatience;
        if (Clock::now() - start >= patience)
            return PostResult::TargetLost;
    }
}

} // namespace talvera
