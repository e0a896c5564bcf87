// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11WorkArea.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/windows/EwmhWindows.h"

#include <xcb/randr.h>

namespace talvera {

namespace {

constexpr std::uint32_t mostStrutItems = 12;

} // namespace

X11WorkArea::X11WorkArea(X11Connection& connection, EwmhWindows& windows)
    : m_connection(connection)
    , m_windows(windows) {
    if (!connection.extension(xcb_randr_id))
        return;
    const auto version =
        connection.reply<xcb_randr_query_version_reply_t>(xcb_randr_query_version(connection.get(), 1, 5));
    m_hasMonitors = version && (version->major_version > 1 || version->minor_version >= 5);
}

std::optional<QRect> X11WorkArea::now() {
    const auto all = monitors();
    const auto active = activeWindow();
    auto monitor = active ? monitorOf(all, *active) : std::nullopt;
    if (!monitor)
        monitor = monitorOf(all, pointer());
    if (!monitor && !all.empty())
        monitor = all.front();
    if (!monitor)
        return std::nullopt;
    QRect screen;
    for (const auto& each : all)
        screen |= each;
    return withoutStruts(*monitor, struts(), QSize(screen.right() + 1, screen.bottom() + 1));
}

/// The primary one first; the whole screen where the server knows of none.
std::vector<QRect> X11WorkArea::monitors() {
    std::vector<QRect> found;
    const auto answer = m_hasMonitors
                            ? m_connection.reply<xcb_randr_get_monitors_reply_t>(
                                  xcb_randr_get_monitors(m_connection.get(), m_connection.root(), 1))
                            : nullptr;
    if (answer) {
        auto monitor = xcb_randr_get_monitors_monitors_iterator(answer.get());
        for (; monitor.rem > 0; xcb_randr_monitor_info_next(&monitor)) {
            const QRect area(monitor.data->x, monitor.data->y, monitor.data->width, monitor.data->height);
            found.insert(monitor.data->primary ? found.begin() : found.end(), area);
        }
    }
    if (found.empty()) {
        const auto root = m_connection.reply<xcb_get_geometry_reply_t>(
            xcb_get_geometry(m_connection.get(), m_connection.root()));
        if (root)
            found.push_back({0, 0, root->width, root->height});
    }
    return found;
}

std::optional<QRect> X11WorkArea::activeWindow() {
    const auto active = m_windows.activeWindow();
    if (!active)
        return std::nullopt;
    const auto placeQuestion =
        xcb_translate_coordinates(m_connection.get(), *active, m_connection.root(), 0, 0);
    const auto sizeQuestion = xcb_get_geometry(m_connection.get(), *active);
    const auto place = m_connection.reply<xcb_translate_coordinates_reply_t>(placeQuestion);
    const auto size = m_connection.reply<xcb_get_geometry_reply_t>(sizeQuestion);
    if (!place || !size)
        return std::nullopt;
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

QRect X11WorkArea::pointer() {
    const auto answer = m_connection.reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection.get(), m_connection.root()));
    return answer ? QRect(answer->root_x, answer->root_y, 1, 1) : QRect();
}

std::vector<Strut> X11WorkArea::struts() {
    // All questions go out before the first answer is awaited: one round trip, however many windows there
    // are.
    struct Question {
        X11PropertyQuestion partial;
        X11PropertyQuestion whole;
    };
    std::vector<Question> questions;
    for (const auto window : m_windows.managedWindows())
        questions.push_back({m_connection.askProperty(window, "_NET_WM_STRUT_PARTIAL", mostStrutItems),
                             m_connection.askProperty(window, "_NET_WM_STRUT", mostStrutItems)});
    std::vector<Strut> found;
    for (const auto& question : questions) {
        auto struts = strutsOf(m_connection.read(question.partial).items());
        const auto whole = strutsOf(m_connection.read(question.whole).items());
        if (struts.empty()) // the older property counts where the newer lacks
            struts = whole;
        found.insert(found.end(), struts.begin(), struts.end());
    }
    return found;
}

} // namespace talvera
