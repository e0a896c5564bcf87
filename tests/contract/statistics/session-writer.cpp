// SPDX-License-Identifier: MIT
// session-writer PATH: adds sessions to the store, numbered by their words from what is there on, and prints
// each number once its session is safe.
#include "linux/sqlite/SqliteSessionDatabase.h"

#include <QString>

#include <cstdio>

using namespace talvera;

int main(int, char** argv) {
    const auto store = SqliteSessionDatabases().open(QString::fromLocal8Bit(argv[1]));
    std::int64_t last = 0;
    store->forEach(std::nullopt, [&last](const DictationSession& session) { last = session.wordCount; });
    std::puts("open");
    std::fflush(stdout);
    while (true) {
        DictationSession session;
        session.timestamp = WallTime(std::chrono::seconds(++last));
        session.wordCount = last;
        session.languageCode = QStringLiteral("en");
        session.polishBackend = QStringLiteral("none");
        store->insert({session});
        std::printf("%lld\n", static_cast<long long>(last));
        std::fflush(stdout);
    }
}
