// SPDX-License-Identifier: MIT
#include "linux/clipboard/CompanionPasteboard.h"

#include "platform/system/Console.h"

#include <utility>

namespace talvera {

namespace {

constexpr std::chrono::milliseconds answerLimit{2000};

} // namespace

CompanionPasteboard::CompanionPasteboard(Console& console, Session session)
    : m_console(console)
    , m_session(std::move(session))
    , m_holder(m_session.startCompanion()) {}

CompanionPasteboard::~CompanionPasteboard() = default;

bool CompanionPasteboard::setString(const QString& text) {
    const std::scoped_lock lock(m_mutex);
    const QByteArray bytes = text.toUtf8();
    const std::string_view utf8(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const auto marked = m_session.marked();
    if (offer(utf8, marked))
        return true;
    replaceHolder(m_session.startCompanion());
    if (offer(utf8, marked))
        return true;
    replaceHolder(m_session.startThread());
    if (offer(utf8, marked))
        return true;
    m_console.log(QStringLiteral("[pasteboard] the clipboard can't be set"));
    return false;
}

Pasteboard::State CompanionPasteboard::state() {
    const std::scoped_lock lock(m_mutex);
    const auto answer = m_holder ? askReport(m_holder->socket(), ++m_serial, answerLimit) : std::nullopt;
    return answer ? State{answer->isHeld == 1, answer->requests} : State{};
}

bool CompanionPasteboard::offer(std::string_view utf8, Marked marked) {
    return m_holder && sendText(m_holder->socket(), ++m_serial, utf8, answerLimit, marked);
}

void CompanionPasteboard::replaceHolder(std::unique_ptr<ClipboardHolder> holder) {
    if (m_holder)
        m_holder->giveUp();
    m_holder = std::move(holder);
}

} // namespace talvera
