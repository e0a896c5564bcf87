// SPDX-License-Identifier: MIT
#include "FakePasteboard.h"

namespace talvera::test {

bool FakePasteboard::setString(const QString& text) {
    if (m_refuses)
        return false;
    const std::scoped_lock lock(m_mutex);
    m_string = text;
    m_history.append(text);
    return true;
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
}

} // namespace talvera::test
