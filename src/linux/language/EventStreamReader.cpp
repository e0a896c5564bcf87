// SPDX-License-Identifier: MIT
#include "linux/language/EventStreamReader.h"

#include <utility>

namespace talvera {

QList<QByteArray> EventStreamReader::take(QByteArrayView bytes) {
    QList<QByteArray> events;
    while (!bytes.isEmpty() && !m_isTooLong) {
        const auto end = bytes.indexOf('\n');
        m_line.append(bytes.first(end < 0 ? bytes.size() : end).toByteArray());
        bytes = end < 0 ? QByteArrayView() : bytes.sliced(end + 1);
        m_isTooLong = m_line.size() + m_data.size() > longestEvent;
        if (end >= 0 && !m_isTooLong)
            takeLine(std::exchange(m_line, {}), events);
    }
    return events;
}

/// Of server-sent events only the data counts; comments and the names of events are passed over.
void EventStreamReader::takeLine(QByteArrayView line, QList<QByteArray>& events) {
    if (line.endsWith('\r'))
        line.chop(1);
    if (m_form == Form::Lines) {
        if (!line.isEmpty())
            events.push_back(line.toByteArray());
        return;
    }
    if (line.isEmpty()) {
        if (std::exchange(m_hasData, false))
            events.push_back(std::exchange(m_data, {}));
        return;
    }
    constexpr QByteArrayView field("data:");
    if (!line.startsWith(field))
        return;
    auto value = line.sliced(field.size());
    if (value.startsWith(' '))
        value = value.sliced(1);
    if (std::exchange(m_hasData, true))
        m_data += '\n';
    m_data.append(value.data(), value.size());
}

} // namespace talvera
