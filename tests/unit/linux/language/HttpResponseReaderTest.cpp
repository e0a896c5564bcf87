// SPDX-License-Identifier: MIT
#include "linux/language/HttpResponseReader.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

using State = HttpResponseReader::State;

struct Read {
    QByteArray body;
    HttpResponseReader reader;
};

/// All of it in pieces of `size` bytes.
Read readInPieces(const QByteArray& all, qsizetype size) {
    Read read;
    for (qsizetype at = 0; at < all.size(); at += size)
        read.body += read.reader.take(QByteArrayView(all).sliced(at, std::min(size, all.size() - at)));
    return read;
}

const QByteArray chunked =
    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nTransfer-Encoding: Chunked\r\n\r\n"
    "5\r\nhello\r\nA;x=y\r\n, my world\r\n0\r\nTrailer: x\r\n\r\n";

TEST(HttpResponseReader, chunks_areJoinedHoweverTheyAreCut) {
    for (const qsizetype size : {1, 2, 3, 7, 1000}) {
        const auto read = readInPieces(chunked, size);
        EXPECT_EQ(read.body, "hello, my world") << size;
        EXPECT_EQ(read.reader.status(), 200);
        EXPECT_EQ(read.reader.state(), State::Whole);
    }
}

TEST(HttpResponseReader, countedBody_endsWithItsLastByte) {
    const QByteArray all = "HTTP/1.1 503 Service Unavailable\r\ncontent-length: 4\r\n\r\nbodyand more";
    for (const qsizetype size : {1, 5, 1000}) {
        const auto read = readInPieces(all, size);
        EXPECT_EQ(read.body, "body");
        EXPECT_EQ(read.reader.status(), 503);
        EXPECT_EQ(read.reader.state(), State::Whole);
    }
}

TEST(HttpResponseReader, emptyCountedBody_isWholeWithItsHead) {
    auto read = readInPieces("HTTP/1.1 204 No Content\r\nContent-Length: 0\r\n\r\n", 9);
    EXPECT_EQ(read.reader.state(), State::Whole);
}

TEST(HttpResponseReader, bodyWithoutLength_endsWithTheConnection) {
    auto read = readInPieces("HTTP/1.0 200\r\nServer: x\r\n\r\nall there is", 4);
    EXPECT_EQ(read.reader.state(), State::Open);
    read.reader.takeEnd();
    EXPECT_EQ(read.body, "all there is");
    EXPECT_EQ(read.reader.state(), State::Whole);
}

TEST(HttpResponseReader, announcement_isPassedOver) {
    const auto read =
        readInPieces("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok", 3);
    EXPECT_EQ(read.reader.status(), 200);
    EXPECT_EQ(read.body, "ok");
}

TEST(HttpResponseReader, endInMidAnswer_isBroken) {
    for (qsizetype size = 0; size < chunked.size(); ++size) {
        HttpResponseReader reader;
        reader.take(chunked.left(size));
        reader.takeEnd();
        EXPECT_EQ(reader.state(), State::Broken) << size;
    }
}

TEST(HttpResponseReader, whatIsNoAnswer_isBroken) {
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray chunks = ok + "Transfer-Encoding: chunked\r\n\r\n";
    for (const auto& all : {
             QByteArray("SSH-2.0-OpenSSH_9.2\r\n\r\n"),
             QByteArray("HTTP/2 200\r\n\r\n"),
             QByteArray("HTTP/1.1 2x0 OK\r\n\r\n"),
             QByteArray("HTTP/1.1 099 OK\r\n\r\n"),
             QByteArray("HTTP/1.1 2000\r\n\r\n"),
             ok + "no colon\r\n\r\n",
             ok + "Content-Length: -1\r\n\r\n",
             ok + "Content-Length: many\r\n\r\n",
             ok + "Transfer-Encoding: gzip, chunked\r\n\r\n",
             chunks + "x\r\n",
             chunks + "-1\r\n",
             chunks + "fffffffff\r\n",
             chunks + "2\r\nabc\r\n",
             QByteArray(100'000, 'x'),
             chunks + QByteArray(10'000, '0'),
         }) {
        HttpResponseReader reader;
        reader.take(all);
        EXPECT_EQ(reader.state(), State::Broken) << all.left(60).constData();
        EXPECT_EQ(reader.take(chunked), "") << "nothing more of it counts";
    }
}

} // namespace
