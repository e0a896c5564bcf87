// SPDX-License-Identifier: MIT
#include "linux/wayland/client/Toplevels.h"

#include "linux/wayland/client/WaylandConnection.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <span>
#include <utility>

#include <foreign-toplevel-client-protocol.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <wayland-client.h>

namespace talvera {

namespace {

constexpr std::uint32_t newestVersion = 3;

bool containsActivated(const wl_array& states) {
    const std::span all(static_cast<const std::uint32_t*>(states.data), states.size / sizeof(std::uint32_t));
    return std::ranges::find(all, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != all.end();
}

} // namespace

struct Toplevels::Listener {
    using Handle = zwlr_foreign_toplevel_handle_v1;

    static Toplevels& owner(void* data) { return *static_cast<Toplevels*>(data); }

    static constexpr zwlr_foreign_toplevel_manager_v1_listener ofManager{
        .toplevel = [](void* data, zwlr_foreign_toplevel_manager_v1*,
                       Handle* handle) { owner(data).add(handle); },
        .finished = [](void*, zwlr_foreign_toplevel_manager_v1*) {}};

    static constexpr zwlr_foreign_toplevel_handle_v1_listener ofHandle{
        .title = [](void*, Handle*, const char*) {},
        .app_id = [](void* data, Handle* handle,
                     const char* id) { owner(data).m_toplevels[handle].applicationId = id; },
        .output_enter = [](void*, Handle*, wl_output*) {},
        .output_leave = [](void*, Handle*, wl_output*) {},
        .state = [](void* data, Handle* handle,
                    wl_array* states) { owner(data).setActive(handle, containsActivated(*states)); },
        .done = [](void* data, Handle*) { owner(data).publish(); },
        .closed = [](void* data, Handle* handle) { owner(data).remove(handle); },
        .parent = [](void*, Handle*, Handle*) {}};

    static constexpr wl_callback_listener ofCallback{
        .done = [](void* data, wl_callback*, std::uint32_t) { owner(data).answer(); }};
};

std::unique_ptr<Toplevels> Toplevels::open(std::unique_ptr<WaylandConnection> connection) {
    auto* manager = connection->bind<zwlr_foreign_toplevel_manager_v1>(
        zwlr_foreign_toplevel_manager_v1_interface, newestVersion);
    if (manager == nullptr)
        return nullptr;
    return std::unique_ptr<Toplevels>(new Toplevels(std::move(connection), manager));
}

Toplevels::Toplevels(std::unique_ptr<WaylandConnection> connection, zwlr_foreign_toplevel_manager_v1* manager)
    : m_connection(std::move(connection))
    , m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_manager(manager) {
    ::zwlr_foreign_toplevel_manager_v1_add_listener(m_manager, &Listener::ofManager, this);
    m_thread = std::thread([this] { listen(); });
}

Toplevels::~Toplevels() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    wake();
    m_thread.join();
    if (m_pending != nullptr)
        ::wl_callback_destroy(m_pending);
    for (const auto& [handle, toplevel] : m_toplevels)
        ::zwlr_foreign_toplevel_handle_v1_destroy(handle);
    ::zwlr_foreign_toplevel_manager_v1_destroy(m_manager);
}

std::optional<Toplevels::Look> Toplevels::look() {
    std::unique_lock lock(m_mutex);
    const auto question = ++m_asked;
    wake();
    m_changed.wait_for(lock, WaylandConnection::answerTimeout,
                       [&] { return m_isGone || m_answered >= question; });
    if (m_isGone || m_answered < question)
        return std::nullopt;
    const auto* active = activeOf(m_known);
    return Look{active == nullptr ? std::nullopt : std::optional(active->number)};
}

const Toplevels::Toplevel* Toplevels::activeOf(const std::vector<Toplevel>& toplevels) {
    const Toplevel* last = nullptr;
    for (const auto& each : toplevels) {
        if (each.isActive && (last == nullptr || each.activation > last->activation))
            last = &each;
    }
    return last;
}

std::vector<Toplevels::Toplevel> Toplevels::known() const {
    const std::scoped_lock lock(m_mutex);
    return m_known;
}

void Toplevels::activate(Window window) {
    {
        const std::scoped_lock lock(m_mutex);
        m_wanted = window;
    }
    wake();
}

bool Toplevels::isGone() const {
    const std::scoped_lock lock(m_mutex);
    return m_isGone;
}

void Toplevels::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wake.get(), &one, sizeof one); // full is awake as well
}

void Toplevels::listen() {
    pthread_setname_np(pthread_self(), "focused window");
    std::array sources{pollfd{m_wake.get(), POLLIN, 0}};
    while (takeQuestion() && m_connection->await(sources, -1)) {
    }
    const std::scoped_lock lock(m_mutex);
    m_isGone = true;
    m_changed.notify_all();
}

/// Hands on to the compositor what has come. False when the end has come.
bool Toplevels::takeQuestion() {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto read = ::read(m_wake.get(), &count, sizeof count);
    const std::scoped_lock lock(m_mutex);
    if (const auto wanted = std::exchange(m_wanted, std::nullopt))
        activateNow(*wanted);
    if (m_pending == nullptr && m_asked > m_answered) {
        m_pendingFor = m_asked;
        m_pending = ::wl_display_sync(m_connection->get());
        ::wl_callback_add_listener(m_pending, &Listener::ofCallback, this);
    }
    return !m_isEnding;
}

void Toplevels::activateNow(Window window) {
    const auto found =
        std::ranges::find_if(m_toplevels, [&](const auto& each) { return each.second.number == window; });
    if (found != m_toplevels.end() && m_connection->seat() != nullptr)
        ::zwlr_foreign_toplevel_handle_v1_activate(found->first, m_connection->seat());
}

void Toplevels::answer() {
    ::wl_callback_destroy(std::exchange(m_pending, nullptr));
    const std::scoped_lock lock(m_mutex);
    m_answered = m_pendingFor;
    m_changed.notify_all();
}

void Toplevels::add(zwlr_foreign_toplevel_handle_v1* handle) {
    ::zwlr_foreign_toplevel_handle_v1_add_listener(handle, &Listener::ofHandle, this);
    m_toplevels[handle].number = ++m_lastNumber;
}

void Toplevels::setActive(zwlr_foreign_toplevel_handle_v1* handle, bool isActive) {
    auto& toplevel = m_toplevels[handle];
    if (isActive && !toplevel.isActive)
        toplevel.activation = ++m_lastActivation;
    toplevel.isActive = isActive;
    publish();
}

void Toplevels::remove(zwlr_foreign_toplevel_handle_v1* handle) {
    ::zwlr_foreign_toplevel_handle_v1_destroy(handle);
    m_toplevels.erase(handle);
    publish();
}

void Toplevels::publish() {
    const auto all = std::views::values(m_toplevels);
    const std::scoped_lock lock(m_mutex);
    m_known.assign(all.begin(), all.end());
}

} // namespace talvera
