// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayEventTaps.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace talvera {

class SwayEventTaps::Tap final : public EventTap {
public:
    Tap(SwayEventTaps& taps, MemberPtr member)
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
    WatchResult watchChord(const KeyChord& chord) override { return watch(SwayInterest{chord, true}); }
    WatchResult watchStroke(const KeyChord& chord) override { return watch(SwayInterest{chord, false}); }
    WatchResult watchKey(VirtualKey) override {
        watchNothing();
        return WatchResult::ChordsOnly;
    }
    void watchNothing() override { watch(std::nullopt); }
    bool isBroken() const override { return m_taps.isBroken(); }

private:
    WatchResult watch(const std::optional<SwayInterest>& interest) {
        m_member->interest = interest;
        m_member->result.reset();
        m_taps.listen();
        return m_member->result.value_or(WatchResult::Watching);
    }

    SwayEventTaps& m_taps;
    const MemberPtr m_member;
};

SwayEventTaps::SwayEventTaps(QString socket, KeyboardLayout& layout)
    : m_socket(std::move(socket))
    , m_bindings(m_socket, layout) {}

SwayEventTaps::~SwayEventTaps() = default;

std::unique_ptr<EventTap> SwayEventTaps::create(EventTap::Callback callback) {
    if (isBroken())
        m_events = SwayEvents::hear(
            m_socket, [this](SwayEvents::Kind kind, const QJsonObject& event) { heard(kind, event); });
    if (!m_events)
        return nullptr;
    const auto member = std::make_shared<Member>(Member{.callback = std::move(callback)});
    m_members.push_back(member);
    return std::make_unique<Tap>(*this, member);
}

void SwayEventTaps::listen() {
    std::vector<MemberPtr> waiting;
    std::ranges::copy_if(m_members, std::back_inserter(waiting),
                         [](const MemberPtr& member) { return member->isEnabled && member->interest; });
    std::vector<SwayInterest> interests;
    for (const auto& member : waiting)
        interests.push_back(*member->interest);
    std::erase_if(m_held, [&interests](VirtualKey key) { // their ends will not be told any more
        return std::ranges::none_of(interests, [key](const SwayInterest& interest) {
            return interest.isHeld && interest.chord.keyCode == key;
        });
    });
    const auto results = m_bindings.hold(interests);
    for (std::size_t i = 0; i < waiting.size(); ++i)
        waiting[i]->result = results.at(i);
}

void SwayEventTaps::remove(const MemberPtr& member) {
    member->isEnabled = false; // it may be among those that are just being told of something
    member->tap = nullptr;
    std::erase(m_members, member);
    listen();
}

void SwayEventTaps::heard(SwayEvents::Kind kind, const QJsonObject& event) {
    const auto change = event.value(QLatin1String("change")).toString();
    if (kind == SwayEvents::Kind::Workspace && change == QStringLiteral("reload"))
        reloaded();
    const auto key = kind == SwayEvents::Kind::Binding ? keyEventOf(event) : std::nullopt;
    if (key && isPress(*key))
        pressed(*key);
    else if (key)
        released(*key);
}

void SwayEventTaps::pressed(const KeyEvent& event) {
    released(event); // if it counts as held yet, its end was never told
    if (isEndToldOf(event))
        m_held.insert(event.keyCode);
    deliver(event);
}

void SwayEventTaps::released(const KeyEvent& event) {
    if (m_held.erase(event.keyCode) > 0)
        deliver({.type = KeyEventType::KeyUp, .keyCode = event.keyCode, .flags = event.flags});
}

/// The user's configuration counts again and nothing else: our bindings are gone, and of keys that are held
/// no end will be told. Which chords the user has bound may have changed, too.
void SwayEventTaps::reloaded() {
    m_bindings.forget();
    for (const auto key : std::exchange(m_held, {}))
        deliver({.type = KeyEventType::KeyUp, .keyCode = key});
    std::vector<std::pair<MemberPtr, std::optional<WatchResult>>> former;
    for (const auto& member : m_members)
        former.emplace_back(member, member->result);
    listen();
    for (const auto& [member, result] : former) {
        if (member->tap && result != member->result && member->tap->onResultChange)
            member->tap->onResultChange(member->result.value_or(WatchResult::Watching));
    }
}

void SwayEventTaps::deliver(const KeyEvent& event) {
    const std::vector newestFirst(m_members.rbegin(), m_members.rend());
    for (const auto& member : newestFirst) {
        const bool isWaiting =
            member->isEnabled && member->interest && member->interest->chord.keyCode == event.keyCode;
        if (isWaiting && member->callback(event) == Verdict::Swallow)
            return;
    }
}

bool SwayEventTaps::isEndToldOf(const KeyEvent& press) const {
    return std::ranges::any_of(m_members, [&press](const MemberPtr& member) {
        return member->isEnabled && member->interest && member->interest->isHeld &&
               member->interest->chord.keyCode == press.keyCode &&
               (press.flags & member->interest->chord.modifiers) == member->interest->chord.modifiers;
    });
}

} // namespace talvera
