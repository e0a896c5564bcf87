// SPDX-License-Identifier: MIT
#include "linux/x11/typing/X11KeyEventPoster.h"

#include "linux/x11/typing/X11Typist.h"
#include "text/typeableCharacters.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <utility>
#include <vector>

namespace talvera {

namespace {

/// Stands in where nothing can be posted.
class SilentSession final : public TypingSession {
public:
    PostResult post(qsizetype, KeyPhase) override { return PostResult::CutOff; }
};

std::shared_ptr<const X11Target> x11Target(const TypingTargetPtr& target) {
    return std::dynamic_pointer_cast<const X11Target>(target);
}

class X11TypingSession final : public TypingSession {
public:
    X11TypingSession(std::unique_ptr<X11Typist> typist, const QStringList& chunks,
                     const TypingTargetPtr& target, InputMethod method)
        : m_typist(std::move(typist)) {
        m_typist->begin(symbolsOf(chunks, method), x11Target(target));
    }

    PostResult post(qsizetype index, KeyPhase phase) override {
        if (index < 0 || index + 1 >= static_cast<qsizetype>(m_starts.size()))
            return PostResult::NotMakeable;
        if (phase == KeyPhase::Up)
            return m_typist->release();
        auto result = PostResult::Posted;
        const auto chunk = static_cast<std::size_t>(index);
        for (std::size_t position = m_starts[chunk]; position < m_starts[chunk + 1]; ++position) {
            const auto pressed = m_typist->press(position);
            if (pressed == PostResult::TargetLost || pressed == PostResult::CutOff)
                return pressed;
            if (pressed != PostResult::Posted)
                result = pressed;
        }
        return result;
    }

private:
    X11Typist::Symbols symbolsOf(const QStringList& chunks, InputMethod method) {
        X11Typist::Symbols symbols;
        for (const QString& chunk : chunks) {
            m_starts.push_back(symbols.size());
            for (const char32_t character : typeableCharacters(chunk))
                symbols.push_back(method == InputMethod::None ? symbolFor(character)
                                                              : uncomposedSymbolFor(character));
        }
        m_starts.push_back(symbols.size());
        return symbols;
    }

    std::vector<std::size_t> m_starts; ///< where each chunk's symbols begin, and where the last one's end
    std::unique_ptr<X11Typist> m_typist;
};

} // namespace

X11KeyEventPoster::X11KeyEventPoster(const X11Server& server)
    : m_connection(server.connect())
    , m_barrierConnection(server.connect())
    , m_focusConnection(server.connect())
    , m_barrier(std::make_unique<TargetBarrier>(*m_barrierConnection))
    , m_focus(std::make_unique<KeyboardFocus>(*m_focusConnection)) {
    m_keyboard = X11Keyboard::open(*m_connection);
    if (m_keyboard)
        TypingLedger::settle(*m_keyboard);
}

X11KeyEventPoster::~X11KeyEventPoster() = default;

void X11KeyEventPoster::prepare() {
    if (!m_prepared && !m_chord && m_keyboard && !m_connection->isBroken())
        m_prepared = std::make_unique<X11Typist>(*m_keyboard, *m_barrier, *m_focus);
}

std::unique_ptr<X11Typist> X11KeyEventPoster::takeTypist() {
    prepare();
    return std::exchange(m_prepared, nullptr);
}

TypingTargetPtr X11KeyEventPoster::focusedTarget() {
    return m_focus->current();
}

bool X11KeyEventPoster::isTypingFaithful(const TypingTargetPtr& target) {
    const InputMethod method = inputMethod(*m_connection);
    if (method != InputMethod::Composes)
        return method == InputMethod::None;
    const auto receiver = x11Target(target ? target : focusedTarget());
    return receiver && talksToInputMethods(*m_connection, receiver->process);
}

std::unique_ptr<TypingSession> X11KeyEventPoster::beginTyping(const QStringList& chunks,
                                                              const TypingTargetPtr& target) {
    m_chord.reset();
    if (!m_keyboard || m_connection->isBroken())
        return std::make_unique<SilentSession>();
    return std::make_unique<X11TypingSession>(takeTypist(), chunks, target, inputMethod(*m_connection));
}

PostResult X11KeyEventPoster::postPaste(KeyPhase phase, const TypingTargetPtr& target) {
    m_chord.reset();
    if (!m_keyboard || m_connection->isBroken())
        return PostResult::CutOff;
    if (phase == KeyPhase::Up)
        return PostResult::Posted;
    m_chord = takeTypist();
    m_chord->begin({XKeysym{XKB_KEY_Insert}}, x11Target(target));
    return m_chord->press(0, true);
}

} // namespace talvera
