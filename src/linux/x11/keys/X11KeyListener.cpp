// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyListener.h"

#include <algorithm>
#include <array>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace talvera {

namespace {

constexpr std::chrono::seconds answerBound{1};

std::vector<WatchResult> allOf(std::size_t count, WatchResult result) {
    return std::vector(count, result);
}

} // namespace

std::unique_ptr<X11KeyListener> X11KeyListener::start(const X11Server& server,
                                                      std::shared_ptr<KeyEventMailbox> mailbox) {
    auto watch = X11KeyWatch::open(server, [mailbox](const KeyEvent& event) { mailbox->send(event); });
    if (!watch)
        return nullptr;
    const int wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0)
        return nullptr;
    auto listener =
        std::unique_ptr<X11KeyListener>(new X11KeyListener(std::move(watch), std::move(mailbox), wakeUp));
    listener->m_thread = std::thread([self = listener.get()] { self->run(); });
    return listener;
}

X11KeyListener::X11KeyListener(std::unique_ptr<X11KeyWatch> watch, std::shared_ptr<KeyEventMailbox> mailbox,
                               int wakeUp)
    : m_watch(std::move(watch))
    , m_mailbox(std::move(mailbox))
    , m_wakeUp(wakeUp) {}

X11KeyListener::~X11KeyListener() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    wake();
    if (m_thread.joinable())
        m_thread.join();
    ::close(m_wakeUp);
}

std::vector<WatchResult> X11KeyListener::listenFor(const std::vector<KeyInterest>& interests) {
    const auto request = std::make_shared<Request>();
    request->interests = interests;
    auto answer = request->answer.get_future();
    {
        const std::scoped_lock lock(m_mutex);
        if (m_hasEnded)
            return allOf(interests.size(), WatchResult::Unavailable);
        m_requests.push_back(request);
    }
    wake();
    if (answer.wait_for(answerBound) == std::future_status::ready)
        return answer.get();
    // A program that holds up the whole server, most likely. The thread goes on as soon as it is let.
    return allOf(interests.size(), WatchResult::Watching);
}

bool X11KeyListener::hasEnded() const {
    const std::scoped_lock lock(m_mutex);
    return m_hasEnded;
}

void X11KeyListener::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
}

void X11KeyListener::run() {
    pthread_setname_np(pthread_self(), "event tap");
    auto requests = takeRequests();
    // What the server told before a request is worked off before its answer.
    while (requests && m_watch->readEvents()) {
        answer(*requests);
        if (m_mailbox->giveUpIfOverdue())
            m_watch->suspend(m_mailbox->heardPresses());
        if (requests->empty())
            wait();
        // Otherwise the answers may have read events into the queues, where no poll sees them.
        requests = takeRequests();
    }
    refuse(std::exchange(requests, std::nullopt).value_or(Requests()));
    end();
}

std::optional<X11KeyListener::Requests> X11KeyListener::takeRequests() {
    const std::scoped_lock lock(m_mutex);
    if (m_isEnding)
        return std::nullopt;
    return std::exchange(m_requests, {});
}

void X11KeyListener::answer(const Requests& requests) {
    for (const auto& request : requests) {
        if (!m_mailbox->hasGivenUp())
            m_watch->resume();
        request->answer.set_value(m_watch->waitFor(request->interests));
    }
}

void X11KeyListener::refuse(const Requests& requests) {
    for (const auto& request : requests)
        request->answer.set_value(allOf(request->interests.size(), WatchResult::Unavailable));
}

void X11KeyListener::end() {
    const std::scoped_lock lock(m_mutex);
    m_hasEnded = true;
    refuse(std::exchange(m_requests, {}));
}

void X11KeyListener::wait() {
    int timeout = -1;
    if (const auto deadline = m_mailbox->deadline()) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(*deadline - KeyEventMailbox::Clock::now());
        timeout = std::max(0, static_cast<int>(left.count()));
    }
    const auto [events, grabs] = m_watch->descriptors();
    std::array<pollfd, 3> sources{{{events, POLLIN, 0}, {grabs, POLLIN, 0}, {m_wakeUp, POLLIN, 0}}};
    ::poll(sources.data(), sources.size(), timeout);
    std::uint64_t count = 0;
    [[maybe_unused]] const auto size = ::read(m_wakeUp, &count, sizeof count);
}

} // namespace talvera
