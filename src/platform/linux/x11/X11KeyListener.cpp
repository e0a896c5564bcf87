// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11KeyListener.h"

#include <csignal>

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

std::unique_ptr<X11KeyListener> X11KeyListener::start(const std::string& display,
                                                      std::shared_ptr<KeyEventMailbox> mailbox) {
    auto watch = X11KeyWatch::open(display, [mailbox](const KeyEvent& event) { mailbox->send(event); });
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

void X11KeyListener::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
}

void X11KeyListener::run() {
    pthread_setname_np(pthread_self(), "event tap");
    while (m_watch->readEvents()) {
        answerRequests();
        if (m_mailbox->giveUpIfOverdue())
            m_watch->suspend();
        {
            const std::scoped_lock lock(m_mutex);
            if (m_isEnding)
                break;
        }
        wait();
    }
    refuseRequests();
}

void X11KeyListener::answerRequests() {
    while (const auto request = takeRequest())
        request->answer.set_value(m_watch->waitFor(request->interests));
}

void X11KeyListener::refuseRequests() {
    {
        const std::scoped_lock lock(m_mutex);
        m_hasEnded = true;
    }
    while (const auto request = takeRequest())
        request->answer.set_value(allOf(request->interests.size(), WatchResult::Unavailable));
}

std::shared_ptr<X11KeyListener::Request> X11KeyListener::takeRequest() {
    const std::scoped_lock lock(m_mutex);
    if (m_requests.empty())
        return nullptr;
    auto request = std::move(m_requests.front());
    m_requests.pop_front();
    return request;
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
