// SPDX-License-Identifier: MIT
#include "linux/lonekeys/LoneKeyEventTaps.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace talvera {

namespace {

/// Those of a virtual key's physical keys that the helper tells of.
std::set<EvdevCode> codesOf(VirtualKey key) {
    std::set<EvdevCode> codes;
    for (const auto code : EvdevKeys::fromVirtual(key)) {
        if (LoneKeyProgram::canTell(code))
            codes.insert(code);
    }
    return codes;
}

} // namespace

class LoneKeyEventTaps::Tap final : public EventTap {
public:
    Tap(LoneKeyEventTaps& taps, MemberPtr member, std::unique_ptr<EventTap> chords)
        : m_taps(taps)
        , m_member(std::move(member))
        , m_chords(std::move(chords)) {
        if (m_chords)
            m_chords->onResultChange = [this](WatchResult result) {
                if (onResultChange)
                    onResultChange(result);
            };
    }
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    ~Tap() override { m_taps.remove(m_member); }

    void setEnabled(bool enabled) override {
        if (m_chords)
            m_chords->setEnabled(enabled);
        if (std::exchange(m_member->isEnabled, enabled) != enabled)
            m_taps.listen();
    }
    WatchResult watchChord(const KeyChord& chord) override {
        watchAlone(std::nullopt);
        return m_chords ? m_chords->watchChord(chord) : WatchResult::Unavailable;
    }
    WatchResult watchStroke(const KeyChord& chord) override {
        watchAlone(std::nullopt);
        return m_chords ? m_chords->watchStroke(chord) : WatchResult::Unavailable;
    }
    WatchResult watchKey(VirtualKey key) override {
        if (m_chords)
            m_chords->watchNothing();
        const bool canBeHeard = !codesOf(key).empty();
        watchAlone(canBeHeard ? std::optional(key) : std::nullopt);
        return canBeHeard ? WatchResult::Watching : WatchResult::ChordsOnly;
    }
    void watchNothing() override {
        if (m_chords)
            m_chords->watchNothing();
        watchAlone(std::nullopt);
    }
    bool isBroken() const override {
        return (m_chords && m_chords->isBroken()) || (m_member->key && m_taps.isBroken());
    }

private:
    void watchAlone(std::optional<VirtualKey> key) {
        if (std::exchange(m_member->key, key) != key)
            m_taps.listen();
    }

    LoneKeyEventTaps& m_taps;
    const MemberPtr m_member;
    const std::unique_ptr<EventTap> m_chords;
};

LoneKeyEventTaps::LoneKeyEventTaps(std::unique_ptr<EventTapFactory> chords, QString helper)
    : m_chords(std::move(chords))
    , m_helper(std::move(helper)) {}

LoneKeyEventTaps::~LoneKeyEventTaps() = default;

std::unique_ptr<EventTap> LoneKeyEventTaps::create(EventTap::Callback callback) {
    auto chords = m_chords ? m_chords->create(callback) : nullptr;
    if (m_chords && !chords)
        return nullptr;
    const auto member = std::make_shared<Member>(Member{.callback = std::move(callback)});
    m_members.push_back(member);
    return std::make_unique<Tap>(*this, member, std::move(chords));
}

void LoneKeyEventTaps::listen() {
    std::set<EvdevCode> wanted;
    for (const auto& member : m_members) {
        if (member->isEnabled && member->key)
            wanted.merge(codesOf(*member->key));
    }
    if (wanted == m_keys && !isBroken())
        return;
    m_keys = wanted;
    m_held.clear(); // whose ends will not be told any more
    m_program = wanted.empty()
                    ? nullptr
                    : LoneKeyProgram::start(m_helper, wanted,
                                            [this](const LoneKeyProgram::News& news) { heard(news); });
}

void LoneKeyEventTaps::remove(const MemberPtr& member) {
    member->isEnabled = false; // it may be among those that are just being told of something
    std::erase(m_members, member);
    listen();
}

void LoneKeyEventTaps::heard(const LoneKeyProgram::News& news) {
    using Kind = LoneKeyProgram::News::Kind;
    const auto before = heldKeys();
    if (news.kind == Kind::Other) {
        for (const auto key : before)
            deliver({.keyCode = VirtualKey::Unnamed, .flags = flagOfModifierKey(key)}, key);
        return;
    }
    if (news.kind == Kind::Ended)
        m_held.clear();
    else if (news.kind == Kind::Up)
        m_held.erase(news.code);
    else if (m_keys.contains(news.code))
        m_held.insert(news.code);

    const auto now = heldKeys();
    std::vector<VirtualKey> changed;
    std::ranges::set_symmetric_difference(before, now, std::back_inserter(changed));
    for (const auto key : changed)
        deliver({.type = KeyEventType::FlagsChanged,
                 .keyCode = key,
                 .flags = now.contains(key) ? flagOfModifierKey(key) : 0},
                key);
}

/// A virtual key may be on several physical ones.
std::set<VirtualKey> LoneKeyEventTaps::heldKeys() const {
    std::set<VirtualKey> keys;
    for (const auto code : m_held) {
        if (const auto key = EvdevKeys::toVirtual(code))
            keys.insert(*key);
    }
    return keys;
}

void LoneKeyEventTaps::deliver(const KeyEvent& event, VirtualKey waitedFor) {
    const std::vector newestFirst(m_members.rbegin(), m_members.rend());
    for (const auto& member : newestFirst) {
        if (member->isEnabled && member->key == waitedFor)
            member->callback(event);
    }
}

} // namespace talvera
