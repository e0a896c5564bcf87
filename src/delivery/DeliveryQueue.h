// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "delivery/FocusNotice.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class MainActor;
class Pasteboard;
class SerialQueue;

/// Does on the typing queue what delivery has decided: types, pastes, copies, one after another. Whatever
/// can't be typed or pasted is left on the clipboard, whole, and the user is told.
///
/// Main thread only. Every call returns at once. The jobs keep what they need of this object alive.
class DeliveryQueue {
public:
    using OnNotice = std::function<void(const FocusNotice&)>;

    /// What the jobs work with; all of it outlives the typing queue's last job.
    struct Parts {
        MainActor& actor;
        SerialQueue& typing;
        KeyEventPoster& keys;
        Pasteboard& pasteboard;
    };

    /// A text that is typed, in one part or several. The jobs alone touch it.
    struct TypedText {
        TypingTargetPtr target; ///< null: wherever the focus is
        QString whole = {};     ///< all parts whose turn has come
        bool isStopped = false; ///< the rest goes to the clipboard
    };

    /// `onNotice` is called on the main thread, and no more once this object is gone.
    DeliveryQueue(Parts parts, OnNotice onNotice);

    void prepare();
    void type(const std::shared_ptr<TypedText>& text, const QString& part);
    void paste(const QString& text, const TypingTargetPtr& target);
    void copy(const QString& text);

private:
    class Worker;

    Parts m_parts;
    std::shared_ptr<Worker> m_worker;
    Lifetime m_lifetime;
};

} // namespace talvera
