// SPDX-License-Identifier: MIT
#include "SimulatedThread.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include <sys/mman.h>
#include <ucontext.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#elif defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace talvera::test {

namespace {

constexpr std::size_t stackBytes = 1 << 20; // only the pages that are touched cost anything

thread_local SimulatedThread* running = nullptr;

/// Stacks are used again, since many jobs are short.
class StackPool {
public:
    StackPool() = default;
    StackPool(const StackPool&) = delete;
    StackPool& operator=(const StackPool&) = delete;
    ~StackPool() {
        for (auto* stack : m_free)
            ::munmap(stack, stackBytes);
    }

    void* take() {
        if (!m_free.empty()) {
            auto* stack = m_free.back();
            m_free.pop_back();
            return stack;
        }
        auto* stack = ::mmap(nullptr, stackBytes, PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
        if (stack == MAP_FAILED)
            throw std::bad_alloc();
        return stack;
    }
    void giveBack(void* stack) { m_free.push_back(stack); }

private:
    std::vector<void*> m_free;
};

StackPool& stacks() {
    static thread_local StackPool pool;
    return pool;
}

/// The sanitizers have to know which stack they are on.
class Switch {
public:
#if defined(__SANITIZE_ADDRESS__)
    void leave(bool forGood, const void* stack, std::size_t bytes) {
        __sanitizer_start_switch_fiber(forGood ? nullptr : &m_fakeStack, stack, bytes);
    }
    /// Answers the stack that was left.
    std::pair<const void*, std::size_t> arrive() {
        std::pair<const void*, std::size_t> left;
        __sanitizer_finish_switch_fiber(m_fakeStack, &left.first, &left.second);
        return left;
    }

private:
    void* m_fakeStack = nullptr;
#else
    static void leave(bool, const void*, std::size_t) {}
    static std::pair<const void*, std::size_t> arrive() {
        return {};
    }
#endif
};

} // namespace

struct SimulatedThread::Context {
    std::function<void()> job;
    void* stack = nullptr;
    ucontext_t inside{};
    ucontext_t outside{};
    Switch insideSwitch;
    Switch outsideSwitch;
    std::pair<const void*, std::size_t> outsideStack;
    bool hasEnded = false;
#if defined(__SANITIZE_THREAD__)
    void* insideFiber = __tsan_create_fiber(0);
    void* outsideFiber = nullptr;
#endif

    void enter() {
        outsideSwitch.leave(false, stack, stackBytes);
#if defined(__SANITIZE_THREAD__)
        outsideFiber = __tsan_get_current_fiber();
        __tsan_switch_to_fiber(insideFiber, 0);
#endif
        ::swapcontext(&outside, &inside);
        outsideSwitch.arrive();
    }

    void leave(bool forGood) {
        insideSwitch.leave(forGood, outsideStack.first, outsideStack.second);
#if defined(__SANITIZE_THREAD__)
        __tsan_switch_to_fiber(outsideFiber, 0);
#endif
        ::swapcontext(&inside, &outside);
        outsideStack = insideSwitch.arrive();
    }

    void run() noexcept {
        outsideStack = insideSwitch.arrive();
        job();
        job = nullptr;
        hasEnded = true;
        leave(true);
    }

    /// makecontext() hands over whole numbers only.
    static void begin(unsigned high, unsigned low) {
        const auto address = (std::uintptr_t(high) << 32U) | std::uintptr_t(low);
        reinterpret_cast<Context*>(address)->run(); // NOLINT(performance-no-int-to-ptr)
    }
};

SimulatedThread::SimulatedThread(std::function<void()> job)
    : m_context(std::make_unique<Context>()) {
    m_context->job = std::move(job);
    m_context->stack = stacks().take();
    ::getcontext(&m_context->inside);
    m_context->inside.uc_stack.ss_sp = m_context->stack;
    m_context->inside.uc_stack.ss_size = stackBytes;
    m_context->inside.uc_link = nullptr;
    const auto address = reinterpret_cast<std::uintptr_t>(m_context.get());
    ::makecontext(&m_context->inside, reinterpret_cast<void (*)()>(&Context::begin), 2,
                  unsigned(address >> 32U), unsigned(address & 0xFFFFFFFFU));
}

SimulatedThread::~SimulatedThread() {
#if defined(__SANITIZE_THREAD__)
    __tsan_destroy_fiber(m_context->insideFiber);
#endif
    if (m_context->hasEnded)
        stacks().giveBack(m_context->stack);
    else
        ::munmap(m_context->stack, stackBytes);
}

void SimulatedThread::resume() {
    auto* const before = std::exchange(running, this);
    m_context->enter();
    running = before;
}

bool SimulatedThread::hasEnded() const {
    return m_context->hasEnded;
}

SimulatedThread* SimulatedThread::current() {
    return running;
}

void SimulatedThread::pause() {
    m_context->leave(false);
}

} // namespace talvera::test
