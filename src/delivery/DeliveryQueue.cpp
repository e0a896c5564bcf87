// SPDX-License-Identifier: MIT
#include "delivery/DeliveryQueue.h"

#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"
#include "platform/desktop/Pasteboard.h"
#include "text/typewriterChunks.h"

namespace talvera {

namespace {

using Kind = FocusNotice::Kind;

constexpr Duration keyHold = seconds(0.002);
constexpr Duration keyPause = seconds(0.025);
constexpr Duration pasteHold = seconds(0.01);
// Programs ask for what they paste some 10 ms after the chord.
constexpr Duration requestPoll = seconds(0.02);
constexpr Duration requestPatience = seconds(1.0);

/// Why delivery ends here; nothing as long as it goes on.
std::optional<Kind> endOf(PostResult result) {
    switch (result) {
    case PostResult::Posted:
    case PostResult::NotMakeable:
        return std::nullopt;
    case PostResult::TargetLost:
        return Kind::ClipboardFocusLost;
    case PostResult::CutOff:
        return Kind::ClipboardNotPossible;
    }
    Q_UNREACHABLE();
}

} // namespace

/// The jobs themselves, on the typing queue.
class DeliveryQueue::Worker {
public:
    Worker(const Parts& parts, OnNotice onNotice)
        : m_parts(parts)
        , m_onNotice(std::move(onNotice)) {}

    void type(TypedText& text, const QString& part) {
        text.whole += part;
        if (text.isStopped) {
            copy(text.whole);
        } else if (!m_parts.keys.isTypingFaithful(text.target)) {
            text.isStopped = !paste(part, text.target);
            if (text.isStopped && part != text.whole)
                copy(text.whole);
        } else if (const auto end = typeChunks(part, text.target)) {
            text.isStopped = true;
            leaveOnClipboard(text.whole, *end);
        }
    }

    /// False when the text has been left on the clipboard, and that has been told.
    bool paste(const QString& text, const TypingTargetPtr& target) {
        // What the clipboard held is not brought back: the text stays there for the user to paste again.
        const bool isSet = m_parts.pasteboard.setString(text);
        const auto before = isSet ? m_parts.pasteboard.state() : Pasteboard::State{};
        if (!before.isHeld) {
            // The chord would paste what another program has put there, but keys may still be had.
            const auto end = typeChunks(text, target);
            if (end)
                leaveOnClipboard(text, *end);
            return !end;
        }
        auto result = m_parts.keys.postPaste(KeyPhase::Down, target);
        m_parts.typing.sleep(pasteHold);
        if (result == PostResult::Posted)
            result = m_parts.keys.postPaste(KeyPhase::Up, target);
        const bool isPasted = result == PostResult::Posted && isAskedFor(before.requests);
        if (result != PostResult::Posted)
            tell(endOf(result).value_or(Kind::ClipboardNotPossible));
        else if (!isPasted)
            tell(Kind::ClipboardNotTaken);
        return isPasted;
    }

    void copy(const QString& text) {
        if (!m_parts.pasteboard.setString(text))
            tell(Kind::Undelivered);
    }

private:
    /// Answers why not the whole text has been typed, if so.
    std::optional<Kind> typeChunks(const QString& text, const TypingTargetPtr& target) {
        const auto chunks = typewriterChunks(text);
        if (chunks.isEmpty())
            return std::nullopt;
        const auto session = m_parts.keys.beginTyping(chunks, target);
        bool isWhole = true;
        // A stroke that can't be made keeps its time, so that the pace of the rest stays the same.
        for (qsizetype index = 0; index < chunks.size(); ++index) {
            const auto down = session->post(index, KeyPhase::Down);
            if (const auto end = endOf(down))
                return end;
            isWhole = isWhole && down == PostResult::Posted;
            m_parts.typing.sleep(keyHold);
            if (const auto end = endOf(session->post(index, KeyPhase::Up)))
                return end;
            m_parts.typing.sleep(keyPause);
        }
        return isWhole ? std::nullopt : std::optional(Kind::ClipboardNotPossible);
    }

    /// That a program asks for the text is the only proof that it was pasted.
    bool isAskedFor(std::uint32_t requestsBefore) {
        for (Duration waited{}; waited < requestPatience; waited += requestPoll) {
            if (m_parts.pasteboard.state().requests != requestsBefore)
                return true;
            m_parts.typing.sleep(requestPoll);
        }
        return false;
    }

    void leaveOnClipboard(const QString& text, Kind reason) {
        tell(m_parts.pasteboard.setString(text) ? reason : Kind::Undelivered);
    }

    void tell(Kind kind) {
        m_parts.actor.post([onNotice = m_onNotice, kind] { onNotice({kind}); });
    }

    Parts m_parts;
    OnNotice m_onNotice;
};

DeliveryQueue::DeliveryQueue(Parts parts, OnNotice onNotice)
    : m_parts(parts) {
    m_worker = std::make_shared<Worker>(parts, m_lifetime.ifAlive(std::move(onNotice)));
}

void DeliveryQueue::prepare() {
    m_parts.typing.async([&keys = m_parts.keys] { keys.prepare(); });
}

void DeliveryQueue::type(const std::shared_ptr<TypedText>& text, const QString& part) {
    m_parts.typing.async([worker = m_worker, text, part] { worker->type(*text, part); });
}

void DeliveryQueue::paste(const QString& text, const TypingTargetPtr& target) {
    m_parts.typing.async([worker = m_worker, text, target] { worker->paste(text, target); });
}

void DeliveryQueue::copy(const QString& text) {
    m_parts.typing.async([worker = m_worker, text] { worker->copy(text); });
}

} // namespace talvera
