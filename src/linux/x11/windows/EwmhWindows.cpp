// SPDX-License-Identifier: MIT
#include "linux/x11/windows/EwmhWindows.h"

#include "linux/support/ForeignText.h"
#include "linux/support/processes.h"
#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/eventType.h"
#include "linux/x11/server/serverTime.h"

#include <xcb/res.h>

#include <algorithm>

namespace talvera {

namespace {

/// In units of four bytes. Texts of windows are cut here: no program's name is longer, whatever its window
/// says.
constexpr std::uint32_t longestText = 256;
constexpr std::uint32_t mostTypes = 16;

/// A source indication of the client message that stands for a pager, and so for the user's own wish: window
/// managers grant it, where they may refuse an application's.
constexpr std::uint32_t sourcePager = 2;

QByteArray bytesOf(const X11Property& property) {
    const auto bytes = property.bytes();
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

} // namespace

EwmhWindows::EwmhWindows(X11Connection& connection)
    : m_connection(connection)
    , m_activeWindow(connection.atom("_NET_ACTIVE_WINDOW")) {
    if (!connection.extension(xcb_res_id))
        return;
    const auto version =
        connection.reply<xcb_res_query_version_reply_t>(xcb_res_query_version(connection.get(), 1, 2));
    m_serverKnowsProcesses = version && (version->server_major > 1 || version->server_minor >= 2);
}

std::optional<xcb_window_t> EwmhWindows::activeWindow() {
    const auto value = m_connection.property(m_connection.root(), m_activeWindow);
    if (value.empty() || value.front() == XCB_WINDOW_NONE || value.front() == m_connection.root())
        return std::nullopt;
    return value.front();
}

std::vector<xcb_window_t> EwmhWindows::managedWindows() {
    auto windows = m_connection.property(m_connection.root(), m_connection.atom("_NET_CLIENT_LIST_STACKING"));
    if (windows.empty())
        windows = m_connection.property(m_connection.root(), m_connection.atom("_NET_CLIENT_LIST"));
    std::reverse(windows.begin(), windows.end());
    return windows;
}

std::optional<EwmhWindowFacts> EwmhWindows::facts(xcb_window_t window) {
    const auto typeQuestion = m_connection.askProperty(window, "_NET_WM_WINDOW_TYPE", mostTypes);
    const auto classQuestion = m_connection.askProperty(window, "WM_CLASS", longestText);
    const auto gtkQuestion = m_connection.askProperty(window, "_GTK_APPLICATION_ID", longestText);
    const auto kdeQuestion = m_connection.askProperty(window, "_KDE_NET_WM_DESKTOP_FILE", longestText);
    const auto type = m_connection.read(typeQuestion);
    const auto windowClass = m_connection.read(classQuestion);
    const auto gtk = m_connection.read(gtkQuestion);
    const auto kde = m_connection.read(kdeQuestion);
    if (!type.windowExists() || !windowClass.windowExists() || !gtk.windowExists() || !kde.windowExists())
        return std::nullopt;

    EwmhWindowFacts facts;
    for (const auto atom : type.items()) {
        if (atom == m_connection.atom("_NET_WM_WINDOW_TYPE_DESKTOP") ||
            atom == m_connection.atom("_NET_WM_WINDOW_TYPE_DOCK"))
            facts.isPartOfDesktop = true;
    }
    // Two texts, each with a zero behind it: the instance and the class.
    const auto names = bytesOf(windowClass).split('\0');
    facts.identity.instance = foreignText(names.value(0));
    facts.identity.windowClass = foreignText(names.value(1));
    facts.identity.applicationId = foreignText(bytesOf(gtk));
    if (facts.identity.applicationId.isEmpty())
        facts.identity.applicationId = foreignText(bytesOf(kde));
    return facts;
}

std::map<xcb_window_t, pid_t> EwmhWindows::processesByClient(const std::vector<xcb_window_t>& windows) {
    std::map<xcb_window_t, pid_t> processes;
    if (!m_serverKnowsProcesses)
        return processes;
    std::vector<xcb_res_client_id_spec_t> questions;
    for (const auto window : windows)
        questions.push_back({window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
    const auto answer = m_connection.reply<xcb_res_query_client_ids_reply_t>(xcb_res_query_client_ids(
        m_connection.get(), static_cast<std::uint32_t>(questions.size()), questions.data()));
    if (!answer)
        return processes;
    auto entry = xcb_res_query_client_ids_ids_iterator(answer.get());
    for (; entry.rem > 0; xcb_res_client_id_value_next(&entry)) {
        if (xcb_res_client_id_value_value_length(entry.data) == 1)
            processes[clientOf(m_connection, entry.data->spec.client)] =
                static_cast<pid_t>(*xcb_res_client_id_value_value(entry.data));
    }
    return processes;
}

std::vector<pid_t> EwmhWindows::processes(const std::vector<xcb_window_t>& windows) {
    // The server's word counts more than the window's: it is right inside a sandbox, too, and no program on
    // another machine can be taken for one of ours. But it names the process that connected, which may have
    // ended after handing its connection to a child.
    const auto byServer = processesByClient(windows);
    std::vector<X11PropertyQuestion> questions;
    for (const auto window : windows)
        questions.push_back(m_connection.askProperty(window, "_NET_WM_PID", 1));
    std::vector<pid_t> result;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto items = m_connection.read(questions[i]).items();
        const auto byWindow = items.empty() ? 0 : static_cast<pid_t>(items.front());
        const auto known = byServer.find(clientOf(m_connection, windows[i]));
        if (known != byServer.end() && processRuns(known->second))
            result.push_back(known->second);
        else if ((known != byServer.end() || !m_serverKnowsProcesses) && processRuns(byWindow))
            result.push_back(byWindow);
        else
            result.push_back(-static_cast<pid_t>(clientOf(m_connection, windows[i])));
    }
    return result;
}

bool EwmhWindows::canActivate() {
    const auto check = m_connection.atom("_NET_SUPPORTING_WM_CHECK");
    const auto manager = m_connection.property(m_connection.root(), check);
    // A window manager that has gone leaves its properties on the root window, but not its own window.
    if (manager.empty() || m_connection.property(manager.front(), check) != manager)
        return false;
    const auto supported = m_connection.property(m_connection.root(), m_connection.atom("_NET_SUPPORTED"));
    return std::find(supported.begin(), supported.end(), m_activeWindow) != supported.end();
}

void EwmhWindows::requestActivation(xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_activeWindow;
    message.data.data32[0] = sourcePager;
    message.data.data32[1] = serverTime(m_connection).value_or(XCB_CURRENT_TIME);
    xcb_send_event(m_connection.get(), 0, m_connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    m_connection.flush();
}

void EwmhWindows::announceActiveWindow() {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection.get(), m_connection.root(), XCB_CW_EVENT_MASK, &events);
    m_connection.flush();
}

bool EwmhWindows::announcesActiveWindow(const xcb_generic_event_t& event) const {
    if (eventType(event) != XCB_PROPERTY_NOTIFY)
        return false;
    return reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == m_activeWindow;
}

} // namespace talvera
