// SPDX-License-Identifier: MIT
#include "delivery/TextInserter.h"

#include "concurrency/MainActor.h"
#include "delivery/DeliverySettings.h"
#include "delivery/FocusMatch.h"
#include "delivery/FocusTracker.h"
#include "platform/desktop/Workspace.h"
#include "platform/keyboard/KeyEventPoster.h"

namespace talvera {

namespace {

constexpr Duration reactivationWait = seconds(0.15);

} // namespace

TextInserter::TextInserter(Parts parts, FocusTracker& focus, const DeliverySettings& settings,
                           OnNotice showFocusNotice)
    : m_parts(parts)
    , m_focus(focus)
    , m_settings(settings)
    , m_showFocusNotice(std::move(showFocusNotice))
    , m_queue({parts.actor, parts.typing, parts.keys, parts.pasteboard}, m_showFocusNotice) {}

ResolvedMode TextInserter::resolveMode(InsertionMode insertionMode, double durationSeconds,
                                       double thresholdSeconds) {
    return insertionMode == InsertionMode::AutoByDuration && durationSeconds < thresholdSeconds
               ? ResolvedMode::Typewriter
               : ResolvedMode::Paste;
}

void TextInserter::prepare() {
    m_queue.prepare();
}

RouteDecision TextInserter::insert(const QString& text, ResolvedMode mode,
                                   const std::optional<FocusSnapshot>& snapshot) {
    return route(text, mode, snapshot, m_showFocusNotice);
}

RouteDecision TextInserter::route(const QString& text, ResolvedMode mode,
                                  const std::optional<FocusSnapshot>& snapshot, const OnNotice& onNotice) {
    return route(text, mode, snapshot, onNotice, std::make_shared<DeliveryQueue::TypedText>());
}

RouteDecision TextInserter::route(const QString& text, ResolvedMode mode,
                                  const std::optional<FocusSnapshot>& snapshot, const OnNotice& onNotice,
                                  const TypedText& typed) {
    const bool protect = m_settings.protectFocusTarget();
    const auto protectionMode = m_settings.focusProtectionMode();

    const auto directly = [&] {
        deliver(text, mode, typed);
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
    // Before the question whether the text belongs there: a window that takes the focus later gets nothing.
    typed->target = m_parts.keys.focusedTarget();
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
    const auto target = bringBack(recorded);
    if (!target)
        return toClipboard({FocusNotice::Kind::ClipboardReactivateFailed, appName});
    typed->target = target;
    const auto decision = directly();
    onNotice({FocusNotice::Kind::PastedIn, appName});
    return decision;
}

/// Null when the application doesn't come, or has no text field in focus.
TypingTargetPtr TextInserter::bringBack(const FocusSnapshot& snapshot) {
    auto& workspace = m_parts.workspace;
    if (!workspace.runningApplication(snapshot.pid) || !workspace.activate(snapshot.pid))
        return nullptr;
    m_parts.actor.blockFor(reactivationWait);
    auto target = m_parts.keys.focusedTarget();
    const auto frontmost = workspace.frontmostApplication();
    const bool isBack = frontmost && frontmost->pid == snapshot.pid && m_focus.hasFocusedTextField();
    return isBack ? std::move(target) : nullptr;
}

void TextInserter::deliver(const QString& text, ResolvedMode mode, const TypedText& typed) {
    if (text.isEmpty())
        return;
    if (mode == ResolvedMode::Typewriter)
        m_queue.type(typed, text);
    else
        m_queue.paste(text, typed->target);
}

void TextInserter::copyToClipboard(const QString& text) {
    if (!text.isEmpty())
        m_queue.copy(text);
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
        m_decision = m_inserter.route(part, m_mode, m_snapshot, m_inserter.m_showFocusNotice, m_typed);
    else
        m_inserter.m_queue.type(m_typed, part);
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
