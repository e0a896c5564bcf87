// SPDX-License-Identifier: MIT
// What it costs to ask applications with more objects than anyone would look at.
#include "BadApplication.h"
#include "leastOf.h"

#include <QFile>

#include <cstddef>
#include <stdexcept>

#include <unistd.h>

using namespace talvera;
using namespace talvera::test;

namespace {

/// Of this process, in bytes.
std::size_t residentMemory() {
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        throw std::runtime_error("no /proc");
    return status.readAll().split(' ').value(1).toULongLong() * std::size_t(::sysconf(_SC_PAGESIZE));
}

/// An application whose every object has 100,000 children.
class WideApplication : public BadApplication {
protected:
    static constexpr int megabyte = 1024 * 1024;

    /// What the questions about it have cost, in bytes. What is given back at once depends on when its
    /// answers come.
    int costOfAsking() {
        const auto before = std::ptrdiff_t(residentMemory());
        expectSilenceInTime();
        return int(std::ptrdiff_t(residentMemory()) - before);
    }
};

} // namespace

TEST_F(WideApplication, wideTree_isNotAskedForWhatItHolds) {
    Peer peer(TALVERA_PEERS "/hostile-accessible.py", {"wide"});
    peer.readUntil("ready");
    ASSERT_TRUE(isInFront(peer));
    EXPECT_LT(leastOf(3, [this] { return costOfAsking(); }), 4 * megabyte);
}

TEST_F(WideApplication, wideTreeThatSpeaksOfOneChild_costsNoMoreEachTime) {
    Peer peer(TALVERA_PEERS "/hostile-accessible.py", {"lying"});
    peer.readUntil("ready");
    ASSERT_TRUE(isInFront(peer));
    EXPECT_LT(costOfAsking(), 200 * megabyte);
    EXPECT_LT(leastOf(3, [this] { return costOfAsking(); }), 20 * megabyte);
}
