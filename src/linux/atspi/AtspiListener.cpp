// SPDX-License-Identifier: MIT
#include "linux/atspi/AtspiListener.h"

#include "linux/atspi/DescribedElement.h"

#include <atspi/atspi-constants.h>

#include <cstdlib>
#include <filesystem>
#include <utility>

namespace talvera {

namespace {

constexpr char busName[] = "org.a11y.Bus";
constexpr char busPath[] = "/org/a11y/bus";

} // namespace

std::string AtspiListener::sessionBusAddress() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"))
        return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string socket = runtime ? std::string(runtime) + "/bus" : std::string();
    std::error_code ignored;
    return std::filesystem::is_socket(socket, ignored) ? "unix:path=" + socket : std::string();
}

AtspiListener::AtspiListener(std::string sessionBus)
    : m_sessionBus(std::move(sessionBus))
    , m_context(g_main_context_new())
    , m_loop(g_main_loop_new(m_context.get(), FALSE))
    , m_ending(g_cancellable_new())
    , m_thread([this] { run(); }) {}

AtspiListener::~AtspiListener() {
    post([this] { g_main_loop_quit(m_loop.get()); });
    m_thread.join();
}

void AtspiListener::run() {
    const WithThreadDefaultContext here(m_context.get());
    if (m_sessionBus.empty())
        onSession(nullptr);
    else
        connectTo(m_sessionBus, &AtspiListener::onSession);
    g_main_loop_run(m_loop.get());

    g_cancellable_cancel(m_ending.get());
    loseAccessibilityBus();
    while (m_underWay > 0)
        g_main_context_iteration(m_context.get(), TRUE);
    if (m_session)
        g_dbus_connection_close(m_session.get(), nullptr, nullptr, nullptr);
    m_session.reset();
    while (g_main_context_iteration(m_context.get(), FALSE)) {
    }
}

void AtspiListener::post(std::function<void()> work) {
    using Work = std::function<void()>;
    const auto perform = [](gpointer data) -> gboolean {
        (*static_cast<Work*>(data))();
        return G_SOURCE_REMOVE;
    };
    const auto forget = [](gpointer data) { delete static_cast<Work*>(data); };
    auto* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT); // in line with the events that came before
    g_source_set_callback(source, perform, new Work(std::move(work)), forget);
    g_source_attach(source, m_context.get());
    g_source_unref(source);
}

void AtspiListener::connectTo(const std::string& address,
                              void (AtspiListener::*connected)(GlibPtr<GDBusConnection>)) {
    struct Pending {
        AtspiListener* listener;
        void (AtspiListener::*connected)(GlibPtr<GDBusConnection>);
    };
    const auto finish = [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
        --pending->listener->m_underWay;
        (pending->listener->*pending->connected)(
            GlibPtr<GDBusConnection>(g_dbus_connection_new_for_address_finish(result, nullptr)));
    };
    ++m_underWay;
    g_dbus_connection_new_for_address(address.c_str(),
                                      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
                                      nullptr, m_ending.get(), finish, new Pending{this, connected});
}

void AtspiListener::onSession(GlibPtr<GDBusConnection> connection) {
    m_session = std::move(connection);
    m_connecting = false;
    if (m_session)
        follow(m_session.get());
    for (const auto& waiting : std::exchange(m_onceConnected, {}))
        waiting();
}

void AtspiListener::follow(GDBusConnection* session) {
    const auto onOwner = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                            GVariant* arguments, gpointer listener) {
        const char* owner = nullptr;
        g_variant_get(arguments, "(&s&s&s)", nullptr, nullptr, &owner);
        if (*owner)
            static_cast<AtspiListener*>(listener)->accessibilityStarted();
    };
    g_dbus_connection_signal_subscribe(session, "org.freedesktop.DBus", "org.freedesktop.DBus",
                                       "NameOwnerChanged", "/org/freedesktop/DBus", busName,
                                       G_DBUS_SIGNAL_FLAGS_NONE, onOwner, this, nullptr);
    findAccessibilityBus();
}

void AtspiListener::callSession(const char* interface, const char* method, GVariant* arguments,
                                OnReply onReply) {
    struct Pending {
        AtspiListener* listener;
        OnReply onReply;
    };
    const auto finish = [](GObject* session, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
        --pending->listener->m_underWay;
        const GlibPtr<GVariant> reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(session), result, nullptr));
        pending->onReply(reply.get());
    };
    ++m_underWay;
    g_dbus_connection_call(m_session.get(), busName, busPath, interface, method, arguments, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, -1, m_ending.get(), finish,
                           new Pending{this, std::move(onReply)});
}

/// The switch lives in that service and is off again when it has been restarted.
void AtspiListener::accessibilityStarted() {
    if (m_enabled)
        setEnabled(*m_enabled, [](bool) {});
    findAccessibilityBus();
}

void AtspiListener::findAccessibilityBus() {
    callSession(busName, "GetAddress", nullptr, [this](GVariant* reply) {
        if (!reply || !g_variant_is_of_type(reply, G_VARIANT_TYPE("(s)")))
            return;
        const char* address = nullptr;
        g_variant_get(reply, "(&s)", &address);
        connectTo(address, &AtspiListener::onAccessibilityBus);
    });
}

void AtspiListener::onAccessibilityBus(GlibPtr<GDBusConnection> connection) {
    loseAccessibilityBus();
    if (!connection)
        return;
    m_bus = std::make_unique<AtspiBus>(std::move(connection));
    m_bus->follow("object:state-changed:focused", "org.a11y.atspi.Event.Object", "StateChanged", "focused",
                  [this](const AtspiObject& object, GVariant* event) {
                      const GlibPtr<GVariant> gained(
                          g_variant_n_children(event) > 1 ? g_variant_get_child_value(event, 1) : nullptr);
                      if (gained && g_variant_is_of_type(gained.get(), G_VARIANT_TYPE_INT32) &&
                          g_variant_get_int32(gained.get()) == 1)
                          m_memory.focusGained(object);
                  });
    m_bus->follow("window:activate", "org.a11y.atspi.Event.Window", "Activate", nullptr,
                  [this](const AtspiObject& window, GVariant*) { m_memory.windowActivated(window); });
    m_bus->follow("window:deactivate", "org.a11y.atspi.Event.Window", "Deactivate", nullptr,
                  [this](const AtspiObject& window, GVariant*) { m_memory.windowDeactivated(window); });
}

void AtspiListener::loseAccessibilityBus() {
    m_bus.reset();
    m_memory = {};
    m_processes.clear();
}

std::vector<std::string> AtspiListener::servicesOf(pid_t pid, AtspiBus::Deadline deadline) {
    const auto known = [&] {
        std::vector<std::string> services;
        for (const auto& [service, process] : m_processes) {
            if (process == pid)
                services.push_back(service);
        }
        return services;
    };
    auto services = known();
    if (!services.empty())
        return services;
    std::map<std::string, pid_t> processes;
    for (const auto& service : m_bus->applications(deadline)) {
        const auto before = m_processes.find(service);
        if (before != m_processes.end())
            processes.insert(*before);
        else if (const auto process = m_bus->process(service, deadline))
            processes.emplace(service, *process);
    }
    m_processes.swap(processes);
    return known();
}

std::optional<AtspiDescription> AtspiListener::focused(pid_t pid, AtspiBus::Deadline deadline) {
    if (!m_bus)
        return std::nullopt;
    for (const auto& service : servicesOf(pid, deadline)) {
        if (auto object = focusedIn(service, deadline))
            return object;
    }
    return std::nullopt;
}

std::optional<AtspiDescription> AtspiListener::focusedIn(const std::string& service,
                                                         AtspiBus::Deadline deadline) {
    const auto last = m_memory.lastFocused(service);
    const auto remembered = last ? m_bus->describe(*last, deadline) : std::nullopt;
    if (remembered && remembered->has(ATSPI_STATE_FOCUSED) && !tellsNothing(remembered->role))
        return remembered;
    const auto windows = m_bus->activeWindows(service, deadline);
    if (!windows)
        return std::nullopt;
    for (const auto& window : *windows) {
        if (auto found = m_bus->findFocused(window, deadline))
            return found;
    }
    // The application believes that it is not in front, since a held hotkey keeps the keyboard from it.
    return windows->empty() ? remembered : std::nullopt;
}

void AtspiListener::setEnabled(bool enabled, std::function<void(bool)> done) {
    m_enabled = enabled;
    if (m_connecting) {
        m_onceConnected.push_back([this, enabled, done = std::move(done)] { setEnabled(enabled, done); });
        return;
    }
    if (!m_session)
        return done(false);
    callSession("org.freedesktop.DBus.Properties", "Set",
                g_variant_new("(ssv)", "org.a11y.Status", "IsEnabled", g_variant_new_boolean(enabled)),
                [done = std::move(done)](GVariant* reply) { done(reply != nullptr); });
}

} // namespace talvera
