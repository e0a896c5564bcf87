// SPDX-License-Identifier: MIT
#include "linux/x11/typing/KeyboardFocus.h"

#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/eventType.h"

#include <xcb/shape.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <unistd.h>

namespace talvera {

namespace {

/// In pixels. Lockers cover whole monitors; menus and notifications are smaller.
constexpr int leastWidth = 600;
constexpr int leastHeight = 400;
constexpr int deepestNesting = 16;

constexpr std::chrono::milliseconds movePoll{5};

} // namespace

std::shared_ptr<const X11Target> KeyboardFocus::current() {
    const std::scoped_lock lock(m_mutex);
    auto target = std::make_shared<X11Target>();
    const Place now = settledPlace();
    target->active = now.active;
    // A window that is active and hasn't the focus gets it yet, or has lost it to a locker or a launcher,
    // which no text is meant for.
    const bool hasActive = isWindow(now.active) && !isInside(now.focus, now.active) &&
                           !isOfOneApplication(now.focus, now.active);
    target->focus = hasActive ? now.active : now.focus;
    if (isWindow(target->focus)) {
        target->outermost = outermost(target->focus);
        target->isPopup = isPopup(target->outermost);
        target->process = processOfWindow(m_connection, target->focus);
    }
    return target;
}

void KeyboardFocus::watch(const X11Target& target) {
    const std::scoped_lock lock(m_mutex);
    while (m_connection.pollEvent()) {
    }
    m_isGrabbed = false;
    if (isWindow(target.focus))
        listenTo(target.focus, true);
}

void KeyboardFocus::unwatch() {
    const std::scoped_lock lock(m_mutex);
    for (const xcb_window_t window : std::set(m_watched))
        listenTo(window, false);
    m_connection.flush();
}

void KeyboardFocus::listenTo(xcb_window_t window, bool listen) {
    const std::uint32_t events = listen ? XCB_EVENT_MASK_FOCUS_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &events);
    if (listen)
        m_watched.insert(window);
    else
        m_watched.erase(window);
}

KeyDestination KeyboardFocus::destination(const X11Target& target) {
    const std::scoped_lock lock(m_mutex);
    const Place now = place();
    noteGrabs();
    const bool activeCounts = now.active != XCB_NONE && target.active != XCB_NONE;
    if (activeCounts && now.active != target.active && !isPartOf(target, now.active) &&
        windowExists(m_connection, now.active))
        return KeyDestination::Elsewhere;
    if (now.focus != target.focus && !m_watched.contains(now.focus)) {
        if (!isWindow(now.focus) || isOfWindowManager(now.focus))
            return KeyDestination::Nobody;
        if (!isPartOf(target, now.focus))
            return KeyDestination::Elsewhere;
        listenTo(now.focus, true);
    }
    m_targetWindow = now.focus;
    return m_isGrabbed ? grabDestination(target) : KeyDestination::Target;
}

KeyboardFocus::Place KeyboardFocus::place() {
    const auto activeQuestion = m_connection.askProperty(m_connection.root(), "_NET_ACTIVE_WINDOW", 1);
    const auto focusQuestion = xcb_get_input_focus(m_connection.get());
    const auto active = m_connection.read(activeQuestion).items();
    const auto focus = m_connection.reply<xcb_get_input_focus_reply_t>(focusQuestion);
    return {active.empty() ? xcb_window_t{XCB_NONE} : active.front(),
            focus ? focus->focus : xcb_window_t{XCB_NONE}};
}

/// The place of the focus once window manager and server agree on it, or the last one seen. While the focus
/// moves, no window may have it for a moment, or one of the window manager's, and _NET_ACTIVE_WINDOW comes
/// after it: for a while it may name a window that is gone, which is none then.
KeyboardFocus::Place KeyboardFocus::settledPlace() {
    const auto start = std::chrono::steady_clock::now();
    Place now = place();
    while (!isSettled(now) && !m_connection.isBroken() &&
           std::chrono::steady_clock::now() - start < m_patience) {
        std::this_thread::sleep_for(movePoll);
        now = place();
    }
    if (now.active != now.focus && !windowExists(m_connection, now.active))
        now.active = XCB_NONE;
    return now;
}

bool KeyboardFocus::isSettled(const Place& place) {
    if (!isWindow(place.focus))
        return false;
    if (place.focus == place.active || isInside(place.focus, place.active))
        return true;
    if (place.active != XCB_NONE)
        return isOfOneApplication(place.focus, place.active) && isPopup(outermost(place.focus));
    return !windowManager();
}

/// A window of the window manager's own, if there is one that tells of the active window.
std::optional<xcb_window_t> KeyboardFocus::windowManager() {
    const auto manager =
        m_connection.property(m_connection.root(), m_connection.atom("_NET_SUPPORTING_WM_CHECK"));
    // One that has ended leaves its properties behind.
    const bool runs = !manager.empty() && windowExists(m_connection, manager.front());
    return runs ? std::optional(manager.front()) : std::nullopt;
}

bool KeyboardFocus::isOfWindowManager(xcb_window_t window) {
    const auto manager = windowManager();
    return isWindow(window) && manager && clientOf(m_connection, window) == clientOf(m_connection, *manager);
}

/// The server tells the window with the focus that a grab has taken the keys from it, or has given them back.
void KeyboardFocus::noteGrabs() {
    while (const XcbEvent event = m_connection.pollEvent()) {
        const int type = eventType(*event);
        const auto& change = reinterpret_cast<const xcb_focus_in_event_t&>(*event);
        if (type == XCB_FOCUS_OUT && change.mode == XCB_NOTIFY_MODE_GRAB)
            m_isGrabbed = true;
        else if (type == XCB_FOCUS_IN && change.mode == XCB_NOTIFY_MODE_UNGRAB)
            m_isGrabbed = false;
    }
}

/// Only the server knows which client has the grab. But one that grabs the keyboard for long shows a window:
/// the menus of an application do, and so do lockers.
KeyDestination KeyboardFocus::grabDestination(const X11Target& target) {
    for (const xcb_window_t window : unmanagedWindows()) {
        if (isOfApplication(target, window))
            return KeyDestination::Target;
        if (coversScreen(window) && processOfWindow(m_connection, window) != ::getpid())
            return KeyDestination::Elsewhere;
    }
    return KeyDestination::Grab;
}

bool KeyboardFocus::isWindow(xcb_window_t window) const {
    return window > XCB_INPUT_FOCUS_POINTER_ROOT && window != m_connection.root();
}

/// A window of the application that isn't another one to the user.
bool KeyboardFocus::isPartOf(const X11Target& target, xcb_window_t window) {
    const xcb_window_t whole = outermost(window);
    if (whole == target.outermost)
        return true;
    return isOfApplication(target, window) && (target.isPopup || isPopup(whole));
}

/// Whether `window` is a part of `whole`, of the same application or taken in from another one.
bool KeyboardFocus::isInside(xcb_window_t window, xcb_window_t whole) {
    for (int depth = 0; isWindow(window) && depth < deepestNesting; ++depth) {
        if (window == whole)
            return true;
        const auto tree =
            m_connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(m_connection.get(), window));
        window = tree ? tree->parent : xcb_window_t{XCB_NONE};
    }
    return false;
}

bool KeyboardFocus::isOfOneApplication(xcb_window_t one, xcb_window_t other) {
    if (clientOf(m_connection, one) == clientOf(m_connection, other))
        return true;
    const pid_t process = processOfWindow(m_connection, one);
    return process != 0 && process == processOfWindow(m_connection, other);
}

bool KeyboardFocus::isOfApplication(const X11Target& target, xcb_window_t window) {
    return clientOf(m_connection, window) == clientOf(m_connection, target.focus) ||
           (target.process != 0 && processOfWindow(m_connection, window) == target.process);
}

bool KeyboardFocus::isPopup(xcb_window_t window) {
    const auto attributes = m_connection.reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes(m_connection.get(), window));
    if (attributes && attributes->override_redirect)
        return true;
    const auto types = m_connection.property(window, m_connection.atom("_NET_WM_WINDOW_TYPE"));
    return std::any_of(types.begin(), types.end(), [this](xcb_atom_t type) {
        return type == m_connection.atom("_NET_WM_WINDOW_TYPE_DROPDOWN_MENU") ||
               type == m_connection.atom("_NET_WM_WINDOW_TYPE_POPUP_MENU") ||
               type == m_connection.atom("_NET_WM_WINDOW_TYPE_COMBO") ||
               type == m_connection.atom("_NET_WM_WINDOW_TYPE_TOOLTIP");
    });
}

bool KeyboardFocus::coversScreen(xcb_window_t window) {
    const auto sizeQuestion = xcb_get_geometry(m_connection.get(), window);
    const auto shapeQuestion = xcb_shape_get_rectangles(m_connection.get(), window, XCB_SHAPE_SK_INPUT);
    const auto size = m_connection.reply<xcb_get_geometry_reply_t>(sizeQuestion);
    const auto shape = m_connection.reply<xcb_shape_get_rectangles_reply_t>(shapeQuestion);
    const bool letsInputThrough = shape && xcb_shape_get_rectangles_rectangles_length(shape.get()) == 0;
    return size && !letsInputThrough && size->width >= leastWidth && size->height >= leastHeight;
}

xcb_window_t KeyboardFocus::outermost(xcb_window_t window) {
    for (int depth = 0; depth < deepestNesting; ++depth) {
        const auto tree =
            m_connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(m_connection.get(), window));
        if (!tree || tree->parent == XCB_NONE || tree->parent == tree->root ||
            clientOf(m_connection, tree->parent) != clientOf(m_connection, window))
            break;
        window = tree->parent;
    }
    return window;
}

/// Windows that can be seen and that the window manager knows nothing of, the uppermost first.
std::vector<xcb_window_t> KeyboardFocus::unmanagedWindows() {
    const auto tree =
        m_connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(m_connection.get(), m_connection.root()));
    if (!tree)
        return {};
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    std::vector<xcb_window_t> windows(children, children + xcb_query_tree_children_length(tree.get()));
    std::reverse(windows.begin(), windows.end());
    std::vector<xcb_get_window_attributes_cookie_t> questions;
    for (const xcb_window_t window : windows)
        questions.push_back(xcb_get_window_attributes(m_connection.get(), window));
    const auto manager = windowManager();
    std::vector<xcb_window_t> unmanaged;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const auto attributes = m_connection.reply<xcb_get_window_attributes_reply_t>(questions[index]);
        // Frames are the window manager's own, and overlays of a compositor the server's.
        const bool isFrame =
            clientOf(m_connection, windows[index]) == 0 ||
            (manager && clientOf(m_connection, windows[index]) == clientOf(m_connection, *manager));
        if (attributes && attributes->override_redirect && !isFrame &&
            attributes->map_state == XCB_MAP_STATE_VIEWABLE)
            unmanaged.push_back(windows[index]);
    }
    return unmanaged;
}

} // namespace talvera
