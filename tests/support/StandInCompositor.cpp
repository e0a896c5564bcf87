// SPDX-License-Identifier: MIT
#include "StandInCompositor.h"

#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <wayland-server-core.h>

namespace talvera::test {

struct StandInCompositor::Global {
    StandInCompositor& compositor;
    const wl_interface& kind;

    static void bind(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
        auto& self = *static_cast<Global*>(data);
        auto* resource = ::wl_resource_create(client, &self.kind, static_cast<int>(version), id);
        self.compositor.adopt(resource);
        if (self.compositor.m_onBind)
            self.compositor.m_onBind(self.compositor, resource);
    }
};

struct StandInCompositor::Dispatch {
    /// Makes what a request wants made, and closes what it brings.
    static int onRequest(const void*, void* target, std::uint32_t, const wl_message* message,
                         wl_argument* arguments) {
        auto* resource = static_cast<wl_resource*>(target);
        auto& self = *static_cast<StandInCompositor*>(::wl_resource_get_user_data(resource));
        int index = 0;
        for (const char* kind = message->signature; *kind != '\0'; ++kind) {
            if (*kind == '?' || (*kind >= '0' && *kind <= '9'))
                continue;
            if (*kind == 'n')
                self.adopt(::wl_resource_create(::wl_resource_get_client(resource), message->types[index],
                                                ::wl_resource_get_version(resource), arguments[index].n));
            if (*kind == 'h')
                ::close(arguments[index].h);
            ++index;
        }
        if (std::strcmp(message->name, "destroy") == 0)
            ::wl_resource_destroy(resource);
        return 0;
    }

    static void onDestroy(wl_resource* resource) {
        auto& self = *static_cast<StandInCompositor*>(::wl_resource_get_user_data(resource));
        std::erase_if(self.m_last, [resource](const auto& each) { return each.second == resource; });
    }
};

namespace {

int listeningSocket(const std::string& path) {
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(descriptor, 8) != 0)
        throw std::runtime_error("no socket for the compositor");
    return descriptor;
}

} // namespace

StandInCompositor::StandInCompositor(std::vector<const wl_interface*> globals,
                                     std::function<void(StandInCompositor&, wl_resource*)> onBind)
    : m_kinds(std::move(globals))
    , m_onBind(std::move(onBind))
    , m_wake(::eventfd(0, EFD_CLOEXEC))
    , m_display(::wl_display_create()) {
    ::wl_display_add_socket_fd(m_display, listeningSocket(m_socket)); // it closes that
    for (const auto* kind : m_kinds) {
        m_globals.push_back(std::make_unique<Global>(Global{*this, *kind}));
        ::wl_global_create(m_display, kind, kind->version, m_globals.back().get(), &Global::bind);
    }
    m_thread = std::thread([this] { serve(); });
}

StandInCompositor::~StandInCompositor() {
    vanish();
}

void StandInCompositor::serve() {
    auto* loop = ::wl_display_get_event_loop(m_display);
    auto* const waking = ::wl_event_loop_add_fd(
        loop, m_wake.get(), WL_EVENT_READABLE,
        [](int wake, std::uint32_t, void* data) {
            std::uint64_t count = 0;
            if (::read(wake, &count, sizeof count) > 0)
                static_cast<StandInCompositor*>(data)->m_job();
            return 0;
        },
        this);
    while (!m_isEnding) {
        ::wl_display_flush_clients(m_display);
        ::wl_event_loop_dispatch(loop, -1);
    }
    ::wl_event_source_remove(waking);
    ::wl_display_destroy_clients(m_display);
    ::wl_display_destroy(m_display);
}

void StandInCompositor::hand(std::function<void()> job) {
    m_job = std::move(job);
    const std::uint64_t one = 1;
    if (::write(m_wake.get(), &one, sizeof one) < 0)
        throw std::runtime_error("the compositor can't be woken");
}

void StandInCompositor::run(const std::function<void()>& job) {
    std::promise<void> done;
    hand([&] {
        job();
        done.set_value();
    });
    done.get_future().wait();
}

void StandInCompositor::adopt(wl_resource* resource) {
    m_last[::wl_resource_get_class(resource)] = resource;
    ::wl_resource_set_dispatcher(resource, &Dispatch::onRequest, nullptr, this, &Dispatch::onDestroy);
}

wl_resource* StandInCompositor::create(wl_resource* parent, const wl_interface& interface) {
    auto* resource = ::wl_resource_create(::wl_resource_get_client(parent), &interface,
                                          ::wl_resource_get_version(parent), 0);
    adopt(resource);
    return resource;
}

void StandInCompositor::show(const std::string& interface, const std::function<void(wl_resource*)>& action) {
    run([&] {
        const auto found = m_last.find(interface);
        action(found == m_last.end() ? nullptr : found->second);
        ::wl_display_flush_clients(m_display);
    });
}

void StandInCompositor::fallSilent() {
    std::promise<void> isSilent;
    hand([&] {
        isSilent.set_value();
        m_goOn.get_future().wait();
        m_isEnding = true;
    });
    isSilent.get_future().wait();
    m_isSilent = true;
}

void StandInCompositor::vanish() {
    if (!m_thread.joinable())
        return;
    if (m_isSilent)
        m_goOn.set_value();
    else
        run([this] { m_isEnding = true; });
    m_thread.join();
}

} // namespace talvera::test
