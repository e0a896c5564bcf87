// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace talvera {

/// Reads what an HTTP/1.1 server sends to one request, in pieces as they come. It trusts nobody: lines and
/// heads have limits, and what is no answer is Broken for good.
class HttpResponseReader {
public:
    enum class State { Open, Whole, Broken };

    /// Takes the next bytes, and gives those of the body among them.
    QByteArray take(QByteArrayView bytes);

    /// Nothing more can come.
    void takeEnd();

    State state() const { return m_state; }

    /// Of the answer; 0 until its head is whole.
    int status() const { return m_status; }

private:
    enum class Step { Head, ChunkSize, Chunk, ChunkEnd, Trailer, Counted, UntilTheEnd };

    bool goOn(QByteArray& body);
    bool takeHead();
    bool takeHeaderLine(QByteArrayView line);
    bool takeChunkSize();
    bool takeChunkEnd();
    bool takeTrailer();
    bool takeCounted(QByteArray& body);
    bool nextLine(QByteArray& line);
    bool breakOff();

    State m_state = State::Open;
    Step m_step = Step::Head;
    QByteArray m_pending; ///< what has come and isn't understood yet
    int m_status = 0;
    bool m_isChunked = false;
    bool m_isCounted = false;
    qint64 m_left = 0; ///< of the chunk, or of the counted body
};

} // namespace talvera
