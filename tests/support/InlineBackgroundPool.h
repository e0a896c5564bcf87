// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/BackgroundPool.h"

namespace talvera::test {

/// Does everything at once, for tests that don't care when it is done.
class InlineBackgroundPool final : public BackgroundPool {
public:
    void run(std::function<void()> work, std::function<void()> done) override {
        work();
        done();
    }
};

} // namespace talvera::test
