// SPDX-License-Identifier: MIT
#include "linux/pulse/PulseConnection.h"

#include <pulse/error.h>
#include <pulse/proplist.h>
#include <pulse/subscribe.h>

#include <string_view>
#include <utility>

namespace talvera {

namespace {

void forget(pa_operation* operation) {
    if (operation)
        pa_operation_unref(operation);
}

} // namespace

PulseConnection::PulseConnection(MainActor& mainActor, std::string server)
    : m_mainActor(mainActor)
    , m_server(std::move(server))
    , m_announced(AuthorizationStatus::NotDetermined) {
    const PulseLoop::Lock lock(m_loop);
    connect();
}

PulseConnection::~PulseConnection() {
    m_loop.stop();
    close();
}

AuthorizationStatus PulseConnection::status() {
    const PulseLoop::Lock lock(m_loop);
    if (!m_context)
        connect();
    return m_status;
}

void PulseConnection::waitForAnswer(Duration limit) {
    const PulseLoop::Lock lock(m_loop);
    settle(limit);
}

void PulseConnection::whenAnswered(std::function<void()> done) {
    const PulseLoop::Lock lock(m_loop);
    if (!m_context)
        connect();
    if (m_context && !m_answered)
        m_waiting.push_back(std::move(done));
    else
        m_mainActor.post(std::move(done));
}

Subscription PulseConnection::observe(std::function<void()> changed) {
    return m_announced.observe([changed = std::move(changed)](AuthorizationStatus) { changed(); });
}

bool PulseConnection::settle(Duration limit) {
    if (!m_context)
        connect();
    if (m_context && !m_answered)
        m_loop.waitUntil(m_context, limit, [this] { return !m_context || m_answered; });
    return !m_context || m_answered;
}

void PulseConnection::connect() {
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Talvera");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "talvera");
    m_context = pa_context_new_with_proplist(m_loop.api(), "Talvera", properties);
    pa_proplist_free(properties);
    if (!m_context)
        return fail(PA_ERR_INTERNAL);
    pa_context_set_state_callback(
        m_context,
        [](pa_context* context, void* self) { static_cast<PulseConnection*>(self)->onStateChange(context); },
        this);
    // A server that is not there fails in here already, through the callback.
    const char* const server = m_server.empty() ? nullptr : m_server.c_str();
    if (pa_context_connect(m_context, server, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 && m_context)
        fail(pa_context_errno(m_context));
}

void PulseConnection::onStateChange(pa_context* context) {
    switch (pa_context_get_state(context)) {
    case PA_CONTEXT_READY:
        pa_context_set_subscribe_callback(
            context,
            [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
                static_cast<PulseConnection*>(self)->refresh();
            },
            this);
        forget(pa_context_subscribe(
            context,
            static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER),
            nullptr, nullptr));
        refresh();
        break;
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
        fail(pa_context_errno(context));
        break;
    default:
        break;
    }
}

void PulseConnection::close() {
    if (auto* const context = std::exchange(m_context, nullptr)) {
        pa_context_set_state_callback(context, nullptr, nullptr);
        pa_context_set_subscribe_callback(context, nullptr, nullptr);
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
    m_answered = false;
    m_asking = false;
    m_microphone.reset();
    m_sources.clear();
}

void PulseConnection::fail(int error) {
    close();
    m_refused = error == PA_ERR_ACCESS || error == PA_ERR_AUTHKEY;
    answer();
}

void PulseConnection::drop() {
    fail(PA_ERR_TIMEOUT);
}

void PulseConnection::refresh() {
    m_askAgain = m_asking;
    if (std::exchange(m_asking, true))
        return;
    forget(pa_context_get_server_info(
        m_context,
        [](pa_context*, const pa_server_info* info, void* self) {
            auto* const connection = static_cast<PulseConnection*>(self);
            const std::string_view server = info && info->server_name ? info->server_name : "";
            connection->m_isPipeWire = server.find("PipeWire") != std::string_view::npos;
            connection->m_newDefault = info && info->default_source_name ? info->default_source_name : "";
            connection->askForSources();
        },
        this));
}

void PulseConnection::askForSources() {
    m_newSources.clear();
    forget(pa_context_get_source_info_list(
        m_context,
        [](pa_context*, const pa_source_info* info, int end, void* self) {
            auto* const connection = static_cast<PulseConnection*>(self);
            if (end == 0)
                connection->onSource(*info);
            else
                connection->onAllSources();
        },
        this));
}

void PulseConnection::onSource(const pa_source_info& info) {
    const bool unplugged = info.active_port && info.active_port->available == PA_PORT_AVAILABLE_NO;
    m_newSources.push_back(
        {info.name, info.sample_spec, info.channel_map, info.monitor_of_sink != PA_INVALID_INDEX, unplugged});
}

void PulseConnection::onAllSources() {
    m_sources = std::move(m_newSources);
    m_microphone = chooseMicrophone(m_newDefault, m_sources);
    m_answered = true;
    m_refused = false;
    m_asking = false;
    answer();
    if (std::exchange(m_askAgain, false))
        refresh();
}

void PulseConnection::answer() {
    const auto status = m_microphone ? AuthorizationStatus::Authorized : AuthorizationStatus::Denied;
    if (std::exchange(m_status, status) != status)
        m_mainActor.post(m_lifetime.ifAlive([this, status] { m_announced.set(status); }));
    for (auto& waiting : std::exchange(m_waiting, {}))
        m_mainActor.post(std::move(waiting));
    m_loop.signal();
}

} // namespace talvera
