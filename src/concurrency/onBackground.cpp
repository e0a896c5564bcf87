// SPDX-License-Identifier: MIT
#include "concurrency/onBackground.h"

#include <coroutine>
#include <exception>

namespace talvera {

namespace {

struct BackgroundCall {
    BackgroundPool& pool;
    std::function<QString()> work;
    QString result;
    std::exception_ptr failure;

    bool await_ready() const { return false; }

    void await_suspend(std::coroutine_handle<> waiting) {
        pool.run(
            [this] {
                try {
                    result = work();
                } catch (...) {
                    failure = std::current_exception();
                }
            },
            [waiting] { waiting.resume(); });
    }

    QString await_resume() {
        if (failure)
            std::rethrow_exception(failure);
        return std::move(result);
    }
};

} // namespace

Task<QString> onBackground(BackgroundPool& pool, std::function<QString()> work) {
    BackgroundCall call{pool, std::move(work), {}, {}};
    co_return co_await call;
}

} // namespace talvera
