// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11OverlayDesktop.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/windows/WorkAreas.h"
#include "linux/x11/windows/X11OverlayWindow.h"

#include <xcb/randr.h>
#include <xcb/xfixes.h>

#include <QAbstractEventDispatcher>

#include <algorithm>

namespace talvera {

namespace {

/// An overlay that is none, for a session without X server.
class NoOverlayWindow final : public OverlayWindow {
public:
    void setTakesClicks(bool) override {}
    void setShape(const std::vector<QRect>&) override {}
    void stayOnTop(bool) override {}
};

/// Of the server's only screen: today's servers have one, however many monitors.
constexpr auto compositorSelection = "_NET_WM_CM_S0";

} // namespace

X11OverlayDesktop::X11OverlayDesktop()
    : m_connection(X11Connection::open()) {
    if (!m_connection)
        return;
    m_windows.emplace(*m_connection);
    const auto randr = m_connection->reply<xcb_randr_query_version_reply_t>(
        xcb_randr_query_version(m_connection->get(), 1, 5));
    m_hasMonitors = randr && (randr->major_version > 1 || randr->minor_version >= 5);
    m_compositorSelection = m_connection->atom(compositorSelection);
    watchCompositor();
    if (QAbstractEventDispatcher::instance()) {
        m_readable = std::make_unique<QSocketNotifier>(m_connection->descriptor(), QSocketNotifier::Read);
        QObject::connect(m_readable.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    }
}

X11OverlayDesktop::~X11OverlayDesktop() = default;

std::unique_ptr<OverlayWindow> X11OverlayDesktop::adopt(std::uint32_t window) {
    if (!m_connection)
        return std::make_unique<NoOverlayWindow>();
    return std::make_unique<X11OverlayWindow>(*this, window);
}

std::optional<QRect> X11OverlayDesktop::workArea() {
    if (!m_connection || m_connection->isBroken())
        return std::nullopt;
    const auto all = monitors();
    const auto focused = focusedWindow();
    auto monitor = focused ? monitorOf(all, *focused) : std::nullopt;
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

void X11OverlayDesktop::watchCompositor() {
    const auto* fixes = xcb_get_extension_data(m_connection->get(), &xcb_xfixes_id);
    const auto version = m_connection->reply<xcb_xfixes_query_version_reply_t>(
        xcb_xfixes_query_version(m_connection->get(), 5, 0));
    if (fixes && fixes->present && version) {
        m_firstFixesEvent = fixes->first_event;
        xcb_xfixes_select_selection_input(m_connection->get(), m_connection->root(), m_compositorSelection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto owner = m_connection->reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(m_connection->get(), m_compositorSelection));
    isComposited.set(owner && owner->owner != XCB_WINDOW_NONE);
}

void X11OverlayDesktop::readEvents() {
    bool stackChanged = false;
    while (const auto event = m_connection->pollEvent()) {
        const int type = event->response_type & 0x7f;
        if (type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
            const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(*event);
            if (const bool owned = change.owner != XCB_WINDOW_NONE;
                change.selection == m_compositorSelection && owned != isComposited.get())
                isComposited.set(owned);
        }
        if (type == XCB_MAP_NOTIFY) {
            const auto& mapped = reinterpret_cast<const xcb_map_notify_event_t&>(*event);
            stackChanged = stackChanged || !isOurs(mapped.window);
        }
        if (type == XCB_CONFIGURE_NOTIFY) {
            const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(*event);
            stackChanged = stackChanged || isOurs(configured.above_sibling);
        }
    }
    if (m_connection->isBroken())
        m_readable.reset();
    if (stackChanged) {
        const auto windows = m_onTop;
        for (auto* window : windows)
            window->restacked();
    }
}

bool X11OverlayDesktop::isOurs(xcb_window_t window) const {
    return std::any_of(m_onTop.begin(), m_onTop.end(),
                       [window](const X11OverlayWindow* overlay) { return overlay->id() == window; });
}

void X11OverlayDesktop::watchStack(X11OverlayWindow& window, bool watches) {
    const bool watchedBefore = !m_onTop.empty();
    if (watches)
        m_onTop.insert(&window);
    else
        m_onTop.erase(&window);
    if (watchedBefore == !m_onTop.empty())
        return;
    const std::uint32_t events = m_onTop.empty() ? 0 : XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection->get(), m_connection->root(), XCB_CW_EVENT_MASK, &events);
    m_connection->flush();
}

std::vector<QRect> X11OverlayDesktop::monitors() {
    std::vector<QRect> found;
    const auto answer = m_hasMonitors
                            ? m_connection->reply<xcb_randr_get_monitors_reply_t>(
                                  xcb_randr_get_monitors(m_connection->get(), m_connection->root(), 1))
                            : nullptr;
    if (answer) {
        auto monitor = xcb_randr_get_monitors_monitors_iterator(answer.get());
        for (; monitor.rem > 0; xcb_randr_monitor_info_next(&monitor)) {
            const QRect area(monitor.data->x, monitor.data->y, monitor.data->width, monitor.data->height);
            found.insert(monitor.data->primary ? found.begin() : found.end(), area);
        }
    }
    if (found.empty()) {
        const auto root = m_connection->reply<xcb_get_geometry_reply_t>(
            xcb_get_geometry(m_connection->get(), m_connection->root()));
        if (root)
            found.push_back({0, 0, root->width, root->height});
    }
    return found;
}

std::optional<QRect> X11OverlayDesktop::focusedWindow() {
    const auto active = m_windows->activeWindow();
    if (!active)
        return std::nullopt;
    const auto placeQuestion =
        xcb_translate_coordinates(m_connection->get(), *active, m_connection->root(), 0, 0);
    const auto sizeQuestion = xcb_get_geometry(m_connection->get(), *active);
    const auto place = m_connection->reply<xcb_translate_coordinates_reply_t>(placeQuestion);
    const auto size = m_connection->reply<xcb_get_geometry_reply_t>(sizeQuestion);
    if (!place || !size)
        return std::nullopt;
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

QRect X11OverlayDesktop::pointer() {
    const auto answer = m_connection->reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection->get(), m_connection->root()));
    return answer ? QRect(answer->root_x, answer->root_y, 1, 1) : QRect();
}

std::vector<Strut> X11OverlayDesktop::struts() {
    // All questions go out before the first answer is awaited: one round trip, however many windows there
    // are.
    struct Question {
        xcb_get_property_cookie_t partial;
        xcb_get_property_cookie_t whole;
    };
    const auto ask = [this](xcb_window_t window, const char* property) {
        return xcb_get_property(m_connection->get(), 0, window, m_connection->atom(property),
                                XCB_ATOM_CARDINAL, 0, 12);
    };
    const auto answer = [this](xcb_get_property_cookie_t question) {
        const auto reply = m_connection->reply<xcb_get_property_reply_t>(question);
        if (!reply || reply->format != 32)
            return std::vector<std::uint32_t>();
        const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return std::vector(items, items + xcb_get_property_value_length(reply.get()) / sizeof *items);
    };
    std::vector<Question> questions;
    for (const auto window : m_windows->managedWindows())
        questions.push_back({ask(window, "_NET_WM_STRUT_PARTIAL"), ask(window, "_NET_WM_STRUT")});
    std::vector<Strut> found;
    for (const auto& question : questions) {
        auto struts = strutsOf(answer(question.partial));
        const auto whole =
            strutsOf(answer(question.whole)); // the older property counts where the newer lacks
        if (struts.empty())
            struts = whole;
        found.insert(found.end(), struts.begin(), struts.end());
    }
    return found;
}

} // namespace talvera
