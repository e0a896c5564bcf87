// SPDX-License-Identifier: MIT
// What readiness relies on, of the real session and of the fake one alike.
#include "FakeSessionAccess.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/X11SessionAccess.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

struct FakeSession {
    SessionAccess& subject() { return access; }

    test::FakeSessionAccess access;
};

struct RealSession {
    SessionAccess& subject() { return access; }

    std::unique_ptr<X11Connection> connection = X11Server().connect();
    X11SessionAccess access{*connection};
};

template <typename Session>
class SessionAccessContract : public testing::Test {
protected:
    Session session;
    SessionAccess& access = session.subject();
};

using Sessions = testing::Types<FakeSession, RealSession>;
TYPED_TEST_SUITE(SessionAccessContract, Sessions);

TYPED_TEST(SessionAccessContract, fullDesktop_lacksNothing) {
    EXPECT_TRUE(this->access.lacks().empty());
    EXPECT_TRUE(this->access.canWatchKeys());
}

} // namespace
