// SPDX-License-Identifier: MIT
#include "linux/x11/clipboard/X11Pasteboard.h"

#include "linux/x11/clipboard/ClipboardHolder.h"
#include "linux/x11/clipboard/ClipboardLink.h"
#include "platform/system/Console.h"

#include <utility>

namespace talvera {

namespace {

constexpr std::chrono::milliseconds answerLimit{2000};

} // namespace

X11Pasteboard::X11Pasteboard(Console& console, std::string companionProgram, X11Server server)
    : m_console(console)
    , m_companionProgram(std::move(companionProgram))
    , m_server(std::move(server))
    , m_holder(CompanionProcess::start(m_companionProgram, m_server)) {}

X11Pasteboard::~X11Pasteboard() = default;

bool X11Pasteboard::setString(const QString& text) {
    const std::scoped_lock lock(m_mutex);
    const QByteArray bytes = text.toUtf8();
    const std::string_view utf8(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (offer(utf8))
        return true;
    replaceHolder(CompanionProcess::start(m_companionProgram, m_server));
    if (offer(utf8))
        return true;
    replaceHolder(ClipboardThread::start(m_server));
    if (offer(utf8))
        return true;
    m_console.log(QStringLiteral("[pasteboard] the clipboard can't be set"));
    return false;
}

Pasteboard::State X11Pasteboard::state() {
    const std::scoped_lock lock(m_mutex);
    const auto answer = m_holder ? askReport(m_holder->socket(), ++m_serial, answerLimit) : std::nullopt;
    return answer ? State{answer->isHeld == 1, answer->requests} : State{};
}

bool X11Pasteboard::offer(std::string_view utf8) {
    return m_holder && sendText(m_holder->socket(), ++m_serial, utf8, answerLimit);
}

void X11Pasteboard::replaceHolder(std::unique_ptr<ClipboardHolder> holder) {
    if (m_holder)
        m_holder->giveUp();
    m_holder = std::move(holder);
}

} // namespace talvera
