// SPDX-License-Identifier: MIT
#include "linux/language/EventStreamReader.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

using Events = QList<QByteArray>;

Events readInPieces(const QByteArray& all, qsizetype size) {
    EventStreamReader reader;
    Events events;
    for (qsizetype at = 0; at < all.size(); at += size)
        events += reader.take(QByteArrayView(all).sliced(at, std::min(size, all.size() - at)));
    return events;
}

TEST(EventStreamReader, linesThatAreEvents_areTheSameHoweverTheyAreCut) {
    const QByteArray all = "{\"a\":1}\n\r\n{\"b\":2}\r\n\ndata: x\nhalf";
    for (const qsizetype size : {1, 2, 3, 1000}) {
        EventStreamReader reader(EventStreamReader::Form::Lines);
        Events events;
        for (qsizetype at = 0; at < all.size(); at += size)
            events += reader.take(QByteArrayView(all).sliced(at, std::min(size, all.size() - at)));
        EXPECT_EQ(events, (Events{"{\"a\":1}", "{\"b\":2}", "data: x"})) << size;
    }
}

TEST(EventStreamReader, events_areTheSameHoweverTheyAreCut) {
    const QByteArray all =
        ": a comment\n\ndata: one\n\nevent: x\r\ndata:two\r\nid: 7\r\n\r\ndata: three\ndata:  four\n\n"
        "data\n\ndata: gr\xC3\xB6\xC3\x9F"
        "er\n\n";
    const Events expected{"one", "two", "three\n four",
                          "gr\xC3\xB6\xC3\x9F"
                          "er"};
    for (const qsizetype size : {1, 2, 3, 5, 11, 1000})
        EXPECT_EQ(readInPieces(all, size), expected) << size;
}

TEST(EventStreamReader, emptyData_isAnEventToo) {
    EXPECT_EQ(readInPieces("data:\n\ndata: \n\n", 100), (Events{"", ""}));
}

TEST(EventStreamReader, halfAnEvent_isNone) {
    EXPECT_EQ(readInPieces("data: one\n\ndata: tw", 100), Events{"one"});
    EXPECT_EQ(readInPieces("data: one\n", 100), Events());
}

TEST(EventStreamReader, eventThatDoesNotEnd_isNotKept) {
    EventStreamReader reader;
    reader.take("data: ");
    const QByteArray piece(1 << 16, 'x');
    for (int i = 0; i < 160 && !reader.isTooLong(); ++i)
        EXPECT_TRUE(reader.take(piece).isEmpty());
    EXPECT_TRUE(reader.isTooLong());
    EXPECT_TRUE(reader.take("\n\ndata: more\n\n").isEmpty());
}

TEST(EventStreamReader, eventOfManyLines_isNotKeptEither) {
    EventStreamReader reader;
    const QByteArray line = "data: " + QByteArray(1000, 'x') + '\n';
    for (int i = 0; i < 2000 && !reader.isTooLong(); ++i)
        reader.take(line);
    EXPECT_TRUE(reader.isTooLong());
}

} // namespace
