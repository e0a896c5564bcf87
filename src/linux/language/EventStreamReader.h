// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace talvera {

/// Cuts a stream into events, as its bytes come.
class EventStreamReader {
public:
    enum class Form {
        ServerSentEvents,
        Lines, ///< each is an event
    };

    explicit EventStreamReader(Form form = Form::ServerSentEvents)
        : m_form(form) {}

    /// An event of more bytes is none that a model writes.
    static constexpr qsizetype longestEvent = 1 << 20;

    /// Takes the next bytes, and gives the data of the events that are whole with them. Nothing more once
    /// isTooLong().
    QList<QByteArray> take(QByteArrayView bytes);

    /// An event didn't end in time.
    bool isTooLong() const { return m_isTooLong; }

private:
    void takeLine(QByteArrayView line, QList<QByteArray>& events);

    Form m_form;
    QByteArray m_line; ///< the last one, as far as it has come
    QByteArray m_data; ///< of the event that is under way
    bool m_hasData = false;
    bool m_isTooLong = false;
};

} // namespace talvera
