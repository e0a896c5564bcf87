// SPDX-License-Identifier: MIT
#include "linux/language/HttpResponseReader.h"

#include <QList>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

constexpr qsizetype longestHead = 1 << 16;
constexpr qsizetype longestLine = 1 << 12;
constexpr qsizetype digitsOfAChunk = 8;

const QByteArray lineEnd = QByteArrayLiteral("\r\n");
const QByteArray headEnd = QByteArrayLiteral("\r\n\r\n");

/// The status of a line such as "HTTP/1.1 200 OK"; 0 when it is none.
int statusOf(QByteArrayView line) {
    constexpr qsizetype code = 9;
    constexpr qsizetype digits = 3;
    if (!line.startsWith("HTTP/1.") || line.size() < code + digits || line[code - 1] != ' ')
        return 0;
    if (line.size() > code + digits && line[code + digits] != ' ')
        return 0;
    bool isNumber = false;
    const auto status = line.sliced(code, digits).toByteArray().toInt(&isNumber);
    constexpr int least = 100;
    return isNumber && status >= least ? status : 0;
}

} // namespace

QByteArray HttpResponseReader::take(QByteArrayView bytes) {
    QByteArray body;
    if (m_state != State::Open)
        return body;
    m_pending.append(bytes.data(), bytes.size());
    while (m_state == State::Open && goOn(body)) {
    }
    return body;
}

void HttpResponseReader::takeEnd() {
    if (m_state == State::Open)
        m_state = m_step == Step::UntilTheEnd ? State::Whole : State::Broken;
}

/// One step further; false when that takes more bytes.
bool HttpResponseReader::goOn(QByteArray& body) {
    switch (m_step) {
    case Step::Head:
        return takeHead();
    case Step::ChunkSize:
        return takeChunkSize();
    case Step::ChunkEnd:
        return takeChunkEnd();
    case Step::Trailer:
        return takeTrailer();
    case Step::Chunk:
    case Step::Counted:
        return takeCounted(body);
    case Step::UntilTheEnd:
        body += std::exchange(m_pending, {});
        return false;
    }
    Q_UNREACHABLE();
}

bool HttpResponseReader::takeHead() {
    const auto end = m_pending.indexOf(headEnd);
    if (end < 0)
        return m_pending.size() > longestHead && breakOff();
    const auto lines = m_pending.left(end).split('\n');
    m_pending.remove(0, end + headEnd.size());
    m_status = statusOf(lines.front().trimmed());
    if (m_status == 0)
        return breakOff();
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (!takeHeaderLine(lines[i]))
            return breakOff();
    }
    constexpr int firstThatEnds = 200; // what comes before only announces
    if (m_status < firstThatEnds)
        return true;
    if (m_isChunked)
        m_step = Step::ChunkSize;
    else
        m_step = m_isCounted ? Step::Counted : Step::UntilTheEnd;
    return true;
}

bool HttpResponseReader::takeHeaderLine(QByteArrayView line) {
    const auto colon = line.indexOf(':');
    if (colon <= 0)
        return false;
    const auto name = line.first(colon).toByteArray().toLower();
    const auto value = line.sliced(colon + 1).trimmed();
    if (name == "transfer-encoding") {
        m_isChunked = value.toByteArray().toLower() == "chunked";
        return m_isChunked;
    }
    if (name == "content-length") {
        m_left = value.toByteArray().toLongLong(&m_isCounted);
        return m_isCounted && m_left >= 0;
    }
    return true;
}

bool HttpResponseReader::takeChunkSize() {
    QByteArray line;
    if (!nextLine(line))
        return false;
    const auto digits = line.left(line.indexOf(';') < 0 ? line.size() : line.indexOf(';')).trimmed();
    bool isNumber = false;
    m_left = digits.toLongLong(&isNumber, 16);
    if (!isNumber || m_left < 0 || digits.size() > digitsOfAChunk)
        return breakOff();
    m_step = m_left == 0 ? Step::Trailer : Step::Chunk;
    return true;
}

bool HttpResponseReader::takeChunkEnd() {
    if (m_pending.size() < lineEnd.size())
        return false;
    if (!m_pending.startsWith(lineEnd))
        return breakOff();
    m_pending.remove(0, lineEnd.size());
    m_step = Step::ChunkSize;
    return true;
}

bool HttpResponseReader::takeTrailer() {
    QByteArray line;
    if (!nextLine(line))
        return false;
    if (line.isEmpty())
        m_state = State::Whole;
    return true;
}

bool HttpResponseReader::takeCounted(QByteArray& body) {
    const auto count = std::min<qint64>(m_left, m_pending.size());
    body += m_pending.left(count);
    m_pending.remove(0, count);
    m_left -= count;
    if (m_left > 0)
        return false;
    if (m_step == Step::Counted)
        m_state = State::Whole;
    else
        m_step = Step::ChunkEnd;
    return true;
}

/// Takes a line, without its end; false when none is whole, or it is too long to be one.
bool HttpResponseReader::nextLine(QByteArray& line) {
    const auto end = m_pending.indexOf(lineEnd);
    if (end < 0) {
        if (m_pending.size() > longestLine)
            breakOff();
        return false;
    }
    line = m_pending.left(end);
    m_pending.remove(0, end + lineEnd.size());
    return true;
}

bool HttpResponseReader::breakOff() {
    m_state = State::Broken;
    m_pending.clear();
    return false;
}

} // namespace talvera
