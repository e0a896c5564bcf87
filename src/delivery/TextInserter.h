// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/DeliveryQueue.h"
#include "delivery/FocusNotice.h"
#include "delivery/FocusSnapshot.h"
#include "delivery/InsertionMode.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class DeliverySettings;
class FocusTracker;
class KeyEventPoster;
class MainActor;
class Pasteboard;
class SerialQueue;
class Workspace;

/// What became of a delivery.
enum class RouteDecision {
    Direct,    ///< queued for the focused application
    Clipboard, ///< left on the clipboard for the user
};

/// Puts finished text where the user's cursor was: typed, or pasted, after looking whether the focus is still
/// where the text belongs. Where it is not, and can't be brought back, the text goes to the clipboard with a
/// notice, so that no text is ever lost.
///
/// Main thread only. Every call returns at once, but for the short waits of a reactivation and of a probe;
/// what it queues is done in order on the typing queue. A text that then can't be typed or pasted to its end,
/// or whose window loses the focus meanwhile, goes to the clipboard whole, with a notice on the HUD.
class TextInserter {
public:
    using OnNotice = DeliveryQueue::OnNotice;
    class Stream;

    /// What delivery works with; all of it outlives the inserter and the typing queue's last job.
    struct Parts {
        MainActor& actor;
        Workspace& workspace;
        SerialQueue& typing;
        KeyEventPoster& keys;
        Pasteboard& pasteboard;
    };

    /// `showFocusNotice` puts a notice on the HUD.
    TextInserter(Parts parts, FocusTracker& focus, const DeliverySettings& settings,
                 OnNotice showFocusNotice);

    /// Typewriter only for recordings shorter than the threshold, and only if the user lets us choose.
    static ResolvedMode resolveMode(InsertionMode insertionMode, double durationSeconds,
                                    double thresholdSeconds);

    /// A dictation has begun: reads the keymap now, so that its text need not wait for that.
    void prepare();

    /// Routes and delivers; a notice goes to the HUD.
    RouteDecision insert(const QString& text, ResolvedMode mode,
                         const std::optional<FocusSnapshot>& snapshot);

    /// The same, but a notice goes to `onNotice`.
    RouteDecision route(const QString& text, ResolvedMode mode, const std::optional<FocusSnapshot>& snapshot,
                        const OnNotice& onNotice);

    /// What puts a notice on the HUD.
    const OnNotice& showFocusNotice() const { return m_showFocusNotice; }

    /// Queues a clipboard write, with no key event behind it. An empty text leaves the clipboard alone.
    void copyToClipboard(const QString& text);

private:
    using TypedText = std::shared_ptr<DeliveryQueue::TypedText>;

    /// `typed` is what further parts of the text belong to, if it is typed.
    RouteDecision route(const QString& text, ResolvedMode mode, const std::optional<FocusSnapshot>& snapshot,
                        const OnNotice& onNotice, const TypedText& typed);
    TypingTargetPtr bringBack(const FocusSnapshot& snapshot);
    void deliver(const QString& text, ResolvedMode mode, const TypedText& typed);

    Parts m_parts;
    FocusTracker& m_focus;
    const DeliverySettings& m_settings;
    OnNotice m_showFocusNotice;
    DeliveryQueue m_queue;
};

/// One delivery of a text that arrives in parts. A typewriter stream is routed once, with its first part, and
/// types each part as it comes; a paste stream is routed once, whole, when it is finished.
class TextInserter::Stream {
public:
    /// `onNotice` gets the notice of the routing in finish().
    Stream(TextInserter& inserter, ResolvedMode mode, std::optional<FocusSnapshot> snapshot,
           OnNotice onNotice);

    void append(const QString& part);
    void finish();

    ResolvedMode mode() const { return m_mode; }
    const std::optional<FocusSnapshot>& snapshot() const { return m_snapshot; }

    /// Everything received so far.
    const QString& accumulated() const { return m_accumulated; }

    /// Absent until the delivery has been routed.
    std::optional<RouteDecision> decision() const { return m_decision; }

private:
    TextInserter& m_inserter;
    const ResolvedMode m_mode;
    const std::optional<FocusSnapshot> m_snapshot;
    const OnNotice m_onNotice;
    const TypedText m_typed = std::make_shared<DeliveryQueue::TypedText>();
    QString m_accumulated;
    std::optional<RouteDecision> m_decision;
};

} // namespace talvera
