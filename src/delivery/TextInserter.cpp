// SPDX-License-Identifier: MIT
#include "delivery/TextInserter.h"

#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"
#include "delivery/DeliverySettings.h"
#include "delivery/FocusMatch.h"
#include "delivery/FocusTracker.h"
#include "platform/desktop/Pasteboard.h"
#include "platform/desktop/Workspace.h"
#include "platform/keyboard/KeyEventPoster.h"
#include "text/typewriterChunks.h"

namespace talvera {

namespace {

constexpr Duration reactivationWait = seconds(0.15);
constexpr Duration keyHold = seconds(0.002);
constexpr Duration keyPause = seconds(0.025);
constexpr Duration pasteHold = seconds(0.01);

} // namespace

TextInserter::TextInserter(Platform platform, FocusTracker& focus, const DeliverySettings& settings,
                           OnNotice showFocusNotice)
    : m_platform(platform)
    , m_focus(focus)
    , m_settings(settings)
    , m_showFocusNotice(std::move(showFocusNotice)) {}

ResolvedMode TextInserter::resolveMode(InsertionMode insertionMode, double durationSeconds,
                                       double thresholdSeconds) {
    return insertionMode == InsertionMode::AutoByDuration && durationSeconds < thresholdSeconds
               ? ResolvedMode::Typewriter
               : ResolvedMode::Paste;
}

void TextInserter::prepare() {
    m_platform.typing.async([&keys = m_platform.keys] { keys.prepare(); });
}

RouteDecision TextInserter::insert(const QString& text, ResolvedMode mode,
                                   const std::optional<FocusSnapshot>& snapshot) {
    return route(text, mode, snapshot, m_showFocusNotice);
}

RouteDecision TextInserter::route(const QString& text, ResolvedMode mode,
                                  const std::optional<FocusSnapshot>& snapshot, const OnNotice& onNotice) {
    const bool protect = m_settings.protectFocusTarget();
    const auto protectionMode = m_settings.focusProtectionMode();

    const auto directly = [&] {
        deliver(text, mode);
        return RouteDecision::Direct;
    };
    const auto toClipboard = [&](const FocusNotice& notice) {
        copyToClipboard(text);
        onNotice(notice);
        return RouteDecision::Clipboard;
    };

    if (!protect)
        return directly();

    using namespace focus_match;
    const auto match = m_focus.matchFocus(snapshot);
    if (std::holds_alternative<Same>(match) || std::holds_alternative<NoSnapshotButHaveTextField>(match))
        return directly();
    if (std::holds_alternative<OriginalGone>(match))
        return toClipboard(
            {FocusNotice::Kind::ClipboardOriginalGone, snapshot->localizedName.value_or(QString())});
    if (std::holds_alternative<NoSnapshotNoTextField>(match))
        return toClipboard({FocusNotice::Kind::ClipboardNoTextField});
    if (protectionMode == FocusProtectionMode::ClipboardOnly)
        return toClipboard({FocusNotice::Kind::ClipboardByUserPreference});

    const auto& recorded = std::get<DifferentButReactivatable>(match).snapshot;
    const auto appName = recorded.localizedName.value_or(QString());
    if (!bringBack(recorded))
        return toClipboard({FocusNotice::Kind::ClipboardReactivateFailed, appName});
    deliver(text, mode);
    onNotice({FocusNotice::Kind::PastedIn, appName});
    return RouteDecision::Direct;
}

bool TextInserter::bringBack(const FocusSnapshot& snapshot) {
    auto& workspace = m_platform.workspace;
    if (!workspace.runningApplication(snapshot.pid) || !workspace.activate(snapshot.pid))
        return false;
    m_platform.actor.blockFor(reactivationWait);
    const auto frontmost = workspace.frontmostApplication();
    return frontmost && frontmost->pid == snapshot.pid && m_focus.hasFocusedTextField();
}

void TextInserter::deliver(const QString& text, ResolvedMode mode) {
    if (text.isEmpty())
        return;
    if (mode == ResolvedMode::Typewriter)
        queueTypewriter(text);
    else
        queuePaste(text);
}

void TextInserter::queueTypewriter(const QString& text) {
    m_platform.typing.async([text, &typing = m_platform.typing, &keys = m_platform.keys] {
        const auto chunks = typewriterChunks(text);
        if (chunks.isEmpty())
            return;
        const auto session = keys.beginTyping(chunks);
        // A stroke that can't be made keeps its time, so that the pace of the rest stays the same.
        for (qsizetype index = 0; index < chunks.size(); ++index) {
            session->post(index, KeyPhase::Down);
            typing.sleep(keyHold);
            session->post(index, KeyPhase::Up);
            typing.sleep(keyPause);
        }
    });
}

void TextInserter::queuePaste(const QString& text) {
    m_platform.typing.async(
        [text, &typing = m_platform.typing, &keys = m_platform.keys, &pasteboard = m_platform.pasteboard] {
            // What the clipboard held is not brought back: the text stays there for the user to paste again.
            pasteboard.setString(text);
            keys.postPaste(KeyPhase::Down);
            typing.sleep(pasteHold);
            keys.postPaste(KeyPhase::Up);
        });
}

void TextInserter::copyToClipboard(const QString& text) {
    if (text.isEmpty())
        return;
    m_platform.typing.async([text, &pasteboard = m_platform.pasteboard] { pasteboard.setString(text); });
}

TextInserter::Stream::Stream(TextInserter& inserter, ResolvedMode mode, std::optional<FocusSnapshot> snapshot,
                             OnNotice onNotice)
    : m_inserter(inserter)
    , m_mode(mode)
    , m_snapshot(std::move(snapshot))
    , m_onNotice(std::move(onNotice)) {}

void TextInserter::Stream::append(const QString& part) {
    if (part.isEmpty())
        return;
    m_accumulated += part;
    if (m_mode == ResolvedMode::Paste || m_decision == RouteDecision::Clipboard)
        return;
    if (!m_decision)
        m_decision = m_inserter.insert(part, m_mode, m_snapshot);
    else
        m_inserter.queueTypewriter(part);
}

void TextInserter::Stream::finish() {
    if (m_accumulated.isEmpty())
        return;
    if (m_mode == ResolvedMode::Paste)
        m_decision = m_inserter.route(m_accumulated, m_mode, m_snapshot, m_onNotice);
    else if (m_decision == RouteDecision::Clipboard)
        m_inserter.copyToClipboard(m_accumulated); // the clipboard holds only the first part so far
}

} // namespace talvera
