// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinEventTaps.h"

#include "linux/wayland/kwin/kwinShortcutOf.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

QString actionOf(const KeyChord& chord) {
    return QStringLiteral("chord-%1-%2").arg(chord.modifiers, 0, 16).arg(static_cast<int>(chord.keyCode));
}

} // namespace

class KwinEventTaps::Tap final : public EventTap {
public:
    Tap(KwinEventTaps& taps, MemberPtr member)
        : m_taps(taps)
        , m_member(std::move(member)) {
        m_member->tap = this;
    }
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    ~Tap() override { m_taps.remove(m_member); }

    void setEnabled(bool enabled) override {
        if (std::exchange(m_member->isEnabled, enabled) != enabled)
            m_taps.listen();
    }
    WatchResult watchChord(const KeyChord& chord) override { return watch(chord, true); }
    WatchResult watchStroke(const KeyChord& chord) override { return watch(chord, false); }
    WatchResult watchKey(VirtualKey) override {
        watchNothing();
        return WatchResult::ChordsOnly;
    }
    void watchNothing() override { watch(std::nullopt, true); }
    bool isBroken() const override { return m_taps.m_shortcuts.isBroken(); }

private:
    WatchResult watch(const std::optional<KeyChord>& chord, bool isHeld) {
        m_member->chord = chord;
        m_member->isHeld = isHeld;
        m_member->result.reset();
        m_taps.listen();
        return m_member->result.value_or(WatchResult::Watching);
    }

    KwinEventTaps& m_taps;
    const MemberPtr m_member;
};

KwinEventTaps::KwinEventTaps(KeyboardLayout& layout, std::shared_ptr<KwinGuard> guard)
    : m_layout(layout)
    , m_shortcuts(std::move(guard),
                  {.pressed = [this](const QString& action) { pressed(action); },
                   .released = [this](const QString& action) { released(action); },
                   .changed = [this](const QString& action, bool isOurs) { changed(action, isOurs); },
                   .restarted = [this] { releaseAll(); }}) {}

KwinEventTaps::~KwinEventTaps() = default;

std::unique_ptr<EventTap> KwinEventTaps::create(EventTap::Callback callback) {
    if (m_shortcuts.isBroken())
        return nullptr;
    const auto member = std::make_shared<Member>(Member{.callback = std::move(callback)});
    m_members.push_back(member);
    return std::make_unique<Tap>(*this, member);
}

void KwinEventTaps::listen() {
    std::set<QString> wanted;
    for (const auto& member : m_members) {
        if (member->isEnabled && member->chord)
            wanted.insert(actionOf(*member->chord));
    }
    for (const auto& action : std::set(m_kept)) {
        if (wanted.contains(action))
            continue;
        m_shortcuts.remove(action);
        m_kept.erase(action);
        m_down.erase(action); // its end will not be told any more
    }
    for (const auto& member : m_members) {
        if (member->isEnabled && member->chord)
            member->result = hold(*member->chord);
    }
}

WatchResult KwinEventTaps::hold(const KeyChord& chord) {
    const auto action = actionOf(chord);
    if (m_kept.contains(action))
        return WatchResult::Watching;
    const auto shortcut = kwinShortcutOf(chord, m_layout);
    if (!shortcut)
        return WatchResult::Unavailable;
    switch (m_shortcuts.add(action, *shortcut)) {
    case KwinShortcuts::Answer::Registered:
        m_kept.insert(action);
        return WatchResult::Watching;
    case KwinShortcuts::Answer::Taken:
        return WatchResult::ChordTaken;
    case KwinShortcuts::Answer::None:
        m_kept.insert(action); // KWin may come to it yet
        return WatchResult::Unavailable;
    }
    Q_UNREACHABLE();
}

void KwinEventTaps::remove(const MemberPtr& member) {
    member->isEnabled = false; // it may be among those that are just being told of something
    member->tap = nullptr;
    std::erase(m_members, member);
    listen();
}

/// What is told of a key that is down already is its repeat.
void KwinEventTaps::pressed(const QString& action) {
    if (m_down.insert(action).second)
        deliver(action, KeyEventType::KeyDown);
}

void KwinEventTaps::released(const QString& action) {
    if (m_down.erase(action) > 0)
        deliver(action, KeyEventType::KeyUp);
}

/// What the user has put in the chord's place works until we end; without any the chord is somebody else's.
void KwinEventTaps::changed(const QString& action, bool isOurs) {
    const auto result = isOurs ? WatchResult::Watching : WatchResult::ChordTaken;
    for (const auto& member : std::vector(m_members)) {
        if (!member->tap || !member->chord || actionOf(*member->chord) != action)
            continue;
        if (std::exchange(member->result, result) != result && member->tap->onResultChange)
            member->tap->onResultChange(result);
    }
}

void KwinEventTaps::releaseAll() {
    for (const auto& action : std::exchange(m_down, {}))
        deliver(action, KeyEventType::KeyUp);
}

void KwinEventTaps::deliver(const QString& action, KeyEventType type) {
    const std::vector newestFirst(m_members.rbegin(), m_members.rend());
    for (const auto& member : newestFirst) {
        if (!member->isEnabled || !member->chord || actionOf(*member->chord) != action)
            continue;
        if (type == KeyEventType::KeyUp && !member->isHeld)
            continue;
        const KeyEvent event{.type = type,
                             .keyCode = member->chord->keyCode,
                             .flags = type == KeyEventType::KeyDown ? member->chord->modifiers : 0};
        if (member->callback(event) == Verdict::Swallow)
            return;
    }
}

} // namespace talvera
