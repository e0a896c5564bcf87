// SPDX-License-Identifier: MIT
#include "shell/hud/DictationHUDController.h"

#include "concurrency/MainActor.h"

#include <algorithm>
#include <utility>

namespace talvera {

DictationHUDController::DictationHUDController(MainActor& actor, HUDPanelFactory makePanel)
    : m_actor(actor)
    , m_makePanel(std::move(makePanel))
    , m_stateChanges(m_stateHolder->state.observe([this](const DictationHUDState&) { sayWhatWaits(); })) {}

void DictationHUDController::show(DictationHUDState state) {
    beginTransition();
    panel().setIgnoresMouseEvents(true);
    m_stateHolder->level.set(0.0F);
    m_stateHolder->state.set(std::move(state));
    panel().fadeIn();
}

void DictationHUDController::update(DictationHUDState state) {
    beginTransition();
    panel().setIgnoresMouseEvents(true);
    m_stateHolder->state.set(std::move(state));
}

void DictationHUDController::showNotice(const QString& text, NoticeTone tone, Duration autoHideAfter) {
    beginTransition();
    panel().setIgnoresMouseEvents(true);
    m_noticeDuration = autoHideAfter;
    m_stateHolder->state.set(DictationHUDState::Notice{text, tone});
    panel().fadeIn();

    const CancellationToken token;
    m_noticeAutoHide = token;
    m_actor.start([this, &actor = m_actor, owner = m_lifetime.token(), token, autoHideAfter]() -> Task<void> {
        co_await actor.sleep(autoHideAfter, token);
        if (owner.isAlive() && !token.isCancelled())
            hide();
    });
}

void DictationHUDController::showNoticeAfterFade(const QString& text, NoticeTone tone,
                                                 Duration autoHideAfter) {
    if (m_fadesUnderWay > 0)
        m_afterFade.push_back({text, tone, autoHideAfter});
    else
        showNotice(text, tone, autoHideAfter);
}

void DictationHUDController::fadeEnded() {
    if (--m_fadesUnderWay > 0)
        return;
    for (const auto& notice : std::exchange(m_afterFade, {}))
        showNotice(notice.text, notice.tone, notice.autoHideAfter);
}

void DictationHUDController::showRemark(const QString& text, NoticeTone tone, Duration autoHideAfter) {
    if (tellsOfADictation())
        m_waitingRemark = Remark{text, tone, autoHideAfter};
    else
        showNotice(text, tone, autoHideAfter);
}

void DictationHUDController::recordingEnded() {
    if (!currentState().as<DictationHUDState::Listening>() || std::exchange(m_recordingEnded, true))
        return;
    panel().withdraw();
    sayWhatWaits();
}

bool DictationHUDController::tellsOfADictation() const {
    const auto& state = currentState();
    return (state.as<DictationHUDState::Listening>() && !m_recordingEnded) ||
           state.as<DictationHUDState::Transcribing>() || state.as<DictationHUDState::Translating>();
}

/// In a turn of its own: whoever has changed the state may not be done. Then the dictation's own notice runs
/// its time first.
void DictationHUDController::sayWhatWaits() {
    if (!m_waitingRemark || tellsOfADictation())
        return;
    m_actor.post(m_lifetime.ifAlive([this] {
        if (tellsOfADictation() || currentState().as<DictationHUDState::Notice>())
            return;
        if (const auto remark = std::exchange(m_waitingRemark, std::nullopt))
            showNotice(remark->text, remark->tone, remark->autoHideAfter);
    }));
}

void DictationHUDController::showPermission(PermissionKind kind, std::function<void()> onDismiss,
                                            std::function<void()> onOpenSettings) {
    beginTransition();
    panel().setIgnoresMouseEvents(false);
    m_stateHolder->permissionDismiss = std::move(onDismiss);
    m_stateHolder->permissionOpenSettings = std::move(onOpenSettings);
    m_stateHolder->state.set(DictationHUDState::PermissionRequired{kind});
    panel().fadeIn();
}

void DictationHUDController::hide() {
    beginTransition();
    if (m_panel)
        m_panel->setIgnoresMouseEvents(true);
    if (!m_panel || !m_panel->isVisible()) {
        m_stateHolder->state.set(DictationHUDState::Hidden{});
        return;
    }
    ++m_fadesUnderWay;
    const std::function<void()> ended = m_lifetime.ifAlive([this] { fadeEnded(); });
    m_panel->fadeOut([weak = std::weak_ptr(m_stateHolder), ended] {
        if (const auto holder = weak.lock())
            holder->state.set(DictationHUDState::Hidden{});
        ended();
    });
}

void DictationHUDController::setLevel(float input) {
    const float clamped = input < 1.0F ? std::max(input, 0.0F) : 1.0F; // not a number counts as 1
    m_stateHolder->level.set(clamped * 0.4F + m_stateHolder->level.get() * 0.6F);
}

void DictationHUDController::beginTransition() {
    if (const auto autoHide = std::exchange(m_noticeAutoHide, std::nullopt))
        autoHide->cancel();
    m_recordingEnded = false;
    m_stateHolder->permissionDismiss = nullptr;
    m_stateHolder->permissionOpenSettings = nullptr;
}

HUDPanel& DictationHUDController::panel() {
    if (!m_panel)
        m_panel = m_makePanel();
    return *m_panel;
}

} // namespace talvera
