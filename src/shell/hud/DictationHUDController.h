// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/CancellationToken.h"
#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "concurrency/Time.h"
#include "shell/hud/DictationHUDState.h"
#include "shell/hud/HUDPanel.h"
#include "shell/hud/StateHolder.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace talvera {

class MainActor;

/// Owns the HUD's panel and says what it shows. All other classes only ask for transitions, none of which can
/// fail. Main thread only.
class DictationHUDController {
public:
    using NoticeTone = DictationHUDState::NoticeTone;
    using PermissionKind = DictationHUDState::PermissionKind;

    /// `makePanel` is called once: when the panel is prepared, else at the first transition that needs it.
    DictationHUDController(MainActor& actor, HUDPanelFactory makePanel);
    DictationHUDController(const DictationHUDController&) = delete;
    DictationHUDController& operator=(const DictationHUDController&) = delete;

    /// Makes the panel now, so that the first transition need not wait for it.
    void preparePanel() { panel(); }

    /// Brings the panel on screen in `state`, with the level meter at rest.
    void show(DictationHUDState state);

    /// Replaces the state and leaves the panel as it is, shown or not.
    void update(DictationHUDState state);

    /// Shows a message that hides itself. A later transition outruns its time.
    void showNotice(const QString& text, NoticeTone tone, Duration autoHideAfter);

    /// The same, but a fade that is under way ends first, since it would take the message along.
    void showNoticeAfterFade(const QString& text, NoticeTone tone, Duration autoHideAfter);

    /// Shows the clickable card; it stays until the next transition.
    void showPermission(PermissionKind kind, std::function<void()> onDismiss,
                        std::function<void()> onOpenSettings);

    /// Says what the user has asked for outside of a dictation. What a dictation shows goes before: until it
    /// is over the remark waits, and of several the last one.
    void showRemark(const QString& text, NoticeTone tone, Duration autoHideAfter);

    /// Nothing is recorded any more. A panel that shows `listening` leaves the screen, since it would go on
    /// telling that the microphone is open; the state stays.
    void recordingEnded();

    /// Fades the panel out; the state becomes hidden when it is gone. A panel that is shown again during the
    /// fade still goes when the fade ends.
    void hide();

    /// Feeds the level meter; what lies outside of 0 to 1 is clamped.
    void setLevel(float input);

    const DictationHUDState& currentState() const { return m_stateHolder->state.get(); }
    StateHolder& stateHolder() { return *m_stateHolder; }

    /// How long the last notice stays, from its beginning and if nothing outruns it.
    Duration noticeDuration() const { return m_noticeDuration; }

private:
    struct Remark {
        QString text;
        NoticeTone tone;
        Duration autoHideAfter;
    };

    void beginTransition();
    void fadeEnded();
    bool tellsOfADictation() const;
    void sayWhatWaits();
    HUDPanel& panel();

    MainActor& m_actor;
    HUDPanelFactory m_makePanel;
    std::shared_ptr<StateHolder> m_stateHolder = std::make_shared<StateHolder>();
    std::unique_ptr<HUDPanel> m_panel;
    std::optional<CancellationToken> m_noticeAutoHide;
    Duration m_noticeDuration{};
    bool m_recordingEnded = false; ///< though the state is still `listening`
    std::optional<Remark> m_waitingRemark;
    int m_fadesUnderWay = 0;
    std::vector<Remark> m_afterFade;
    Subscription m_stateChanges;
    Lifetime m_lifetime;
};

} // namespace talvera
