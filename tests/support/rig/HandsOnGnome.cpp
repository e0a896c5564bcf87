// SPDX-License-Identifier: MIT
//
// Keys and pointer of GNOME Shell's own, moved by way of its remote desktop. To the Shell they are those of
// the user: its shortcuts, locks and layouts work with them.

#include "Hands.h"
#include "sockets.h"

#include <array>
#include <gio/gio.h>
#include <linux/input-event-codes.h>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int evdevOffset = 8;
constexpr int nameless = KEY_UNKNOWN + evdevOffset;
constexpr int patienceMs = 5000;
// An event that changes nothing, as a second press of a key that is down, never gets to the Shell.
constexpr int eventPatienceMs = 300;

constexpr auto desktopService = "org.gnome.Mutter.RemoteDesktop";
constexpr auto sessionInterface = "org.gnome.Mutter.RemoteDesktop.Session";
constexpr auto idleService = "org.gnome.Mutter.IdleMonitor";
constexpr auto idlePath = "/org/gnome/Mutter/IdleMonitor/Core";

// Its objects live as long as the process.
class HandsOnGnome final : public Hands {
public:
    HandsOnGnome()
        : bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        if (bus == nullptr)
            fail("no session bus");
        g_dbus_connection_signal_subscribe(bus, idleService, idleService, "WatchFired", idlePath, nullptr,
                                           G_DBUS_SIGNAL_FLAGS_NONE, &HandsOnGnome::fired, this, nullptr);
        for (auto& session : sessions) {
            GVariant* made =
                call(desktopService, "/org/gnome/Mutter/RemoteDesktop", desktopService, "CreateSession");
            const char* path = nullptr;
            g_variant_get(made, "(&o)", &path);
            session = path;
            g_variant_unref(made);
            act(session, "Start", nullptr);
        }
        // The Shell has a keyboard from its first key on, and programs hear nothing of a key that comes with
        // it.
        for (const bool down : {true, false})
            key(0, nameless, down);
    }

    void key(int keyboard, int keycode, bool down) override {
        workOff(
            keyboard, "NotifyKeyboardKeycode",
            g_variant_new("(ub)", static_cast<guint32>(keycode - evdevOffset), static_cast<gboolean>(down)));
    }
    void move(int dx, int dy) override {
        workOff(0, "NotifyPointerMotionRelative",
                g_variant_new("(dd)", static_cast<double>(dx), static_cast<double>(dy)));
    }
    void button(int button, bool down) override {
        static constexpr int codes[]{BTN_LEFT, BTN_MIDDLE, BTN_RIGHT};
        if (button < 1 || button > 3)
            fail("no such button");
        workOff(0, "NotifyPointerButton",
                g_variant_new("(ib)", codes[button - 1], static_cast<gboolean>(down)));
    }

    // The bus ends the process when it goes, and the rig ends with the Shell.
    std::vector<int> descriptors() const override { return {}; }
    bool listen() override { return true; }

private:
    static void fired(GDBusConnection*, const char*, const char*, const char*, const char*,
                      GVariant* arguments, void* data) {
        g_variant_get(arguments, "(u)", &static_cast<HandsOnGnome*>(data)->lastFired);
    }

    GVariant* call(const char* service, const char* path, const char* interface, const char* method,
                   GVariant* arguments = nullptr) {
        GError* error = nullptr;
        GVariant* answer =
            g_dbus_connection_call_sync(bus, service, path, interface, method, arguments, nullptr,
                                        G_DBUS_CALL_FLAGS_NONE, patienceMs, nullptr, &error);
        if (answer == nullptr)
            fail(std::string(method) + ": " + error->message);
        return answer;
    }

    void act(const std::string& session, const char* method, GVariant* arguments) {
        g_variant_unref(call(desktopService, session.c_str(), sessionInterface, method, arguments));
    }

    // The answer comes before the Shell has seen the event. That it has, the end of the user's idleness
    // tells; one more question, that it has also worked it off.
    void workOff(int keyboard, const char* method, GVariant* arguments) {
        GVariant* added = call(idleService, idlePath, idleService, "AddUserActiveWatch");
        guint32 watch = 0;
        g_variant_get(added, "(u)", &watch);
        g_variant_unref(added);
        act(sessions[static_cast<std::size_t>(keyboard)], method, arguments);
        const gint64 deadline = g_get_monotonic_time() + eventPatienceMs * 1000;
        const guint wakeUp = g_timeout_add(
            eventPatienceMs, [](void*) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
        while (lastFired != watch && g_get_monotonic_time() < deadline)
            g_main_context_iteration(nullptr, TRUE);
        g_source_remove(wakeUp);
        if (lastFired != watch)
            g_variant_unref(
                call(idleService, idlePath, idleService, "RemoveWatch", g_variant_new("(u)", watch)));
        g_variant_unref(call("org.gnome.Shell", "/org/gnome/Shell", "org.freedesktop.DBus.Peer", "Ping"));
    }

    GDBusConnection* bus;
    std::array<std::string, 2> sessions; ///< a keyboard each
    guint32 lastFired = 0;
};

} // namespace

std::unique_ptr<Hands> handsOnGnome() {
    return std::make_unique<HandsOnGnome>();
}
