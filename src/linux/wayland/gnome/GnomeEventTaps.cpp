// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/GnomeEventTaps.h"

#include <algorithm>
#include <utility>

namespace talvera {

class GnomeEventTaps::Tap final : public EventTap {
public:
    Tap(GnomeEventTaps& taps, MemberPtr member)
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
    WatchResult watchChord(const KeyChord& chord) override { return watch(chord); }
    WatchResult watchStroke(const KeyChord& chord) override { return watch(chord); }
    WatchResult watchKey(VirtualKey) override {
        watchNothing();
        return WatchResult::ChordsOnly;
    }
    void watchNothing() override { watch(std::nullopt); }
    bool isBroken() const override { return false; }

private:
    WatchResult watch(const std::optional<KeyChord>& chord) {
        m_member->chord = chord;
        m_taps.listen();
        return m_member->told = chord ? m_taps.resultOf(*chord) : WatchResult::Watching;
    }

    GnomeEventTaps& m_taps;
    const MemberPtr m_member;
};

GnomeEventTaps::GnomeEventTaps(std::shared_ptr<const ShellBus> bus, std::shared_ptr<ShellView> view)
    : m_view(std::move(view))
    , m_grabs(std::move(bus)) {
    m_grabs.onKey = [this](const ShellAccelerator& key, bool isPress) { heard(key, isPress); };
    m_grabs.onAnswer = [this] { tellResults(); };
    QObject::connect(m_view.get(), &ShellView::extensionCame, &m_context,
                     [this] { m_grabs.extensionCame(); });
    QObject::connect(m_view.get(), &ShellView::extensionWent, &m_context, [this] {
        m_grabs.extensionWent();
        endPresses();
    });
    // Whoever changes the keys of the session comes from a window of its settings, and goes to another.
    QObject::connect(m_view.get(), &ShellView::focusMoved, &m_context, [this] { m_grabs.askForRefused(); });
    if (m_view->presence() == ShellView::Presence::Working)
        m_grabs.extensionCame();
}

GnomeEventTaps::~GnomeEventTaps() = default;

std::unique_ptr<EventTap> GnomeEventTaps::create(EventTap::Callback callback) {
    const auto member = std::make_shared<Member>(Member{.callback = std::move(callback)});
    m_members.push_back(member);
    return std::make_unique<Tap>(*this, member);
}

void GnomeEventTaps::listen() {
    std::set<ShellAccelerator> wanted;
    std::set<VirtualKey> keys;
    for (const auto& member : m_members) {
        if (member->isEnabled && member->chord) {
            wanted.merge(acceleratorsOf(*member->chord));
            keys.insert(member->chord->keyCode);
        }
    }
    std::erase_if(m_held, [&keys](VirtualKey key) { return !keys.contains(key); });
    m_grabs.hold(wanted);
}

void GnomeEventTaps::remove(const MemberPtr& member) {
    member->isEnabled = false; // it may be among those that are just being told of something
    member->tap = nullptr;
    std::erase(m_members, member);
    listen();
}

/// It is the chord itself that counts: somebody else may well have it with one modifier more.
WatchResult GnomeEventTaps::resultOf(const KeyChord& chord) const {
    const auto accelerators = acceleratorsOf(chord);
    if (accelerators.empty())
        return WatchResult::Unavailable;
    const bool isTaken = std::ranges::none_of(accelerators, [&](const ShellAccelerator& accelerator) {
        return accelerator.modifiers == chord.modifiers && m_grabs.isGranted(accelerator).value_or(true);
    });
    return isTaken ? WatchResult::ChordTaken : WatchResult::Watching;
}

void GnomeEventTaps::tellResults() {
    for (const auto& member : std::vector(m_members)) {
        if (!member->tap || !member->isEnabled || !member->chord)
            continue;
        const auto now = resultOf(*member->chord);
        if (std::exchange(member->told, now) != now && member->tap->onResultChange)
            member->tap->onResultChange(now);
    }
}

void GnomeEventTaps::heard(const ShellAccelerator& accelerator, bool isPress) {
    const bool wasHeld = m_held.erase(accelerator.key) > 0;
    if (wasHeld) // also before the next press, should its own end not have been told
        deliver({.type = KeyEventType::KeyUp, .keyCode = accelerator.key, .flags = accelerator.modifiers});
    if (!isPress)
        return;
    m_held.insert(accelerator.key);
    deliver({.type = KeyEventType::KeyDown, .keyCode = accelerator.key, .flags = accelerator.modifiers});
}

void GnomeEventTaps::endPresses() {
    for (const auto key : std::exchange(m_held, {}))
        deliver({.type = KeyEventType::KeyUp, .keyCode = key});
}

void GnomeEventTaps::deliver(const KeyEvent& event) {
    const std::vector newestFirst(m_members.rbegin(), m_members.rend());
    for (const auto& member : newestFirst) {
        const bool isWaiting = member->isEnabled && member->chord && member->chord->keyCode == event.keyCode;
        if (isWaiting && member->callback(event) == Verdict::Swallow)
            return;
    }
}

} // namespace talvera
