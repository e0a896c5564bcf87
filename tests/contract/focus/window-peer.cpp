// SPDX-License-Identifier: MIT
// window-peer [NAME=VALUE...]: a program with one plain window, whose properties are just those that it is
// told. It says "mapped WINDOW" when the window is there, obeys "activate", "second" (another window of the
// same kind) and "lower" on standard input, and ends with it.
//   instance= class=         both parts of WM_CLASS; none without them
//   pid=NUMBER               _NET_WM_PID; none without it
//   type=DESKTOP             _NET_WM_WINDOW_TYPE
//   gtk=ID                   _GTK_APPLICATION_ID
//   override=WIDTHxHEIGHT    a window of that size at the origin of which the window manager knows nothing
//   input=none               one that lets the input through
//   title=TEXT titleSize=N   _NET_WM_NAME, N times the text
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace {

std::map<std::string, std::string> arguments;
xcb_connection_t* connection;
xcb_window_t root;
std::vector<xcb_window_t> windows;

xcb_atom_t atom(const std::string& name) {
    auto* answer =
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr);
    const auto result = answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(answer);
    return result;
}

void setText(xcb_window_t window, const char* property, const char* type, const std::string& text) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8, text.size(),
                        text.data());
}

void setItem(xcb_window_t window, const char* property, xcb_atom_t type, std::uint32_t item) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32, 1, &item);
}

void setProperties(xcb_window_t window) {
    if (arguments.count("class"))
        setText(window, "WM_CLASS", "STRING", arguments["instance"] + '\0' + arguments["class"] + '\0');
    if (arguments.count("gtk"))
        setText(window, "_GTK_APPLICATION_ID", "UTF8_STRING", arguments["gtk"]);
    if (arguments.count("pid"))
        setItem(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, std::atoi(arguments["pid"].c_str()));
    if (arguments.count("type"))
        setItem(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                atom("_NET_WM_WINDOW_TYPE_" + arguments["type"]));
    if (arguments.count("title")) {
        std::string title;
        const int times = arguments.count("titleSize") ? std::atoi(arguments["titleSize"].c_str()) : 1;
        for (int i = 0; i < times; ++i)
            title += arguments["title"];
        setText(window, "_NET_WM_NAME", "UTF8_STRING", title);
        setText(window, "WM_NAME", "STRING", title);
    }
}

void makeWindow() {
    const auto window = xcb_generate_id(connection);
    const bool unmanaged = arguments.count("override") > 0;
    int width = 300;
    int height = 200;
    if (unmanaged)
        std::sscanf(arguments["override"].c_str(), "%dx%d", &width, &height);
    const std::uint32_t values[] = {0xffffff, unmanaged, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const int origin = unmanaged ? 0 : 50;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, origin, origin, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    if (arguments["input"] == "none")
        xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                             window, 0, 0, 0, nullptr);
    setProperties(window);
    xcb_map_window(connection, window);
    windows.push_back(window);
}

void activate(xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2;
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

void lower(xcb_window_t window) {
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
}

void obey(const std::string& command) {
    if (command == "activate")
        activate(windows.front());
    else if (command == "second")
        makeWindow();
    else if (command == "lower")
        lower(windows.front());
}

} // namespace

int main(int count, char** values) {
    for (int i = 1; i < count; ++i) {
        const std::string argument = values[i];
        const auto equals = argument.find('=');
        arguments[argument.substr(0, equals)] = argument.substr(equals + 1);
    }
    connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;
    root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    makeWindow();
    std::string pending;
    for (;;) {
        xcb_flush(connection);
        while (auto* event = xcb_poll_for_event(connection)) {
            if ((event->response_type & 0x7f) == XCB_MAP_NOTIFY) {
                std::printf("mapped %u\n", reinterpret_cast<xcb_map_notify_event_t*>(event)->window);
                std::fflush(stdout);
            }
            std::free(event);
        }
        pollfd ready[] = {{xcb_get_file_descriptor(connection), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        poll(ready, 2, -1);
        if (xcb_connection_has_error(connection))
            return 1;
        if (ready[1].revents == 0)
            continue;
        char buffer[256];
        const auto size = read(STDIN_FILENO, buffer, sizeof buffer);
        if (size <= 0)
            return 0;
        pending.append(buffer, std::size_t(size));
        for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            obey(pending.substr(0, end));
            pending.erase(0, end + 1);
        }
    }
}
