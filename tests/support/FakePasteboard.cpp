// SPDX-License-Identifier: MIT
#include "FakePasteboard.h"

namespace talvera::test {

bool FakePasteboard::setString(const QString& text) {
    if (m_refuses) {
        if (onRefused)
            onRefused();
        return false;
    }
    if (m_taker && onTaken)
        onTaken();
    const std::scoped_lock lock(m_mutex);
    m_string = m_taker.value_or(text);
    m_state = {!m_taker.has_value(), 0};
    m_history.append(text);
    return true;
}

Pasteboard::State FakePasteboard::state() {
    const std::scoped_lock lock(m_mutex);
    return m_state;
}

QString FakePasteboard::paste() {
    const std::scoped_lock lock(m_mutex);
    m_state.requests += m_string ? 1 : 0;
    return m_string.value_or(QString());
}

std::optional<QString> FakePasteboard::string() const {
    const std::scoped_lock lock(m_mutex);
    return m_string;
}

QStringList FakePasteboard::history() const {
    const std::scoped_lock lock(m_mutex);
    return m_history;
}

void FakePasteboard::setImage() {
    const std::scoped_lock lock(m_mutex);
    m_string.reset();
    m_state = {};
}

} // namespace talvera::test
