// SPDX-License-Identifier: MIT
#include "linux/x11/typing/X11Keyboard.h"

#include "linux/x11/server/X11InputDevices.h"
#include "linux/x11/server/XcbXkb.h"
#include "linux/x11/server/eventType.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <map>
#include <optional>

namespace talvera {

namespace {

constexpr std::uint32_t allFilters = XCB_XKB_BOOL_CTRL_SLOW_KEYS | XCB_XKB_BOOL_CTRL_BOUNCE_KEYS;

/// The keyboard that belongs to a pointer, and so to the keys that we post.
std::uint16_t masterOf(const X11InputDevices& devices, std::optional<std::uint16_t> pointer) {
    for (const X11InputDevice& device : devices.all())
        if (device.use == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER && (!pointer || device.id == *pointer))
            return device.attachment;
    return 0;
}

/// What the server tells as one bit for each key.
XKeycodeBits keysIn(const std::uint8_t (&bytes)[xKeycodeCount / 8]) {
    XKeycodeBits keys;
    for (std::size_t index = indexOf(lowestXKeycode); index < keys.size(); ++index)
        keys[index] = (bytes[index / 8] >> (index % 8) & 1) != 0;
    return keys;
}

} // namespace

std::unique_ptr<X11Keyboard> X11Keyboard::open(X11Connection& connection) {
    xcb_connection_t* xcb = connection.get();
    const auto* keyboards = connection.extension(xcb_xkb_id);
    if (!keyboards || !connection.extension(xcb_test_id) || !connection.extension(xcb_input_id))
        return nullptr;
    const auto xkbCookie = xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const auto inputCookie = xcb_input_xi_query_version(xcb, 2, 2);
    const auto pointerCookie = xcb_input_xi_get_client_pointer(xcb, XCB_NONE);
    const auto xkb = connection.reply<xcb_xkb_use_extension_reply_t>(xkbCookie);
    const auto input = connection.reply<xcb_input_xi_query_version_reply_t>(inputCookie);
    const auto pointer = connection.reply<xcb_input_xi_get_client_pointer_reply_t>(pointerCookie);
    if (!xkb || !xkb->supported || !input || !pointer)
        return nullptr;

    // What we type arrives by the keyboard that belongs to our pointer, if the session should have several,
    // and to the first pointer unless one was chosen for us.
    X11InputDevices devices;
    devices.load(connection);
    const std::uint16_t master =
        masterOf(devices, pointer->set ? std::optional(pointer->deviceid) : std::nullopt);
    const auto typingDevice = devices.postingKeyboard(master);
    if (!typingDevice)
        return nullptr;
    return std::unique_ptr<X11Keyboard>(
        new X11Keyboard(connection, master, *typingDevice, keyboards->first_event));
}

void X11Keyboard::watchKeymaps(bool watch) {
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t mapParts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(m_connection.get(), m_typingDevice, events, watch ? 0 : events, watch ? events : 0,
                          mapParts, watch ? mapParts : 0, nullptr);
    m_connection.flush();
}

bool X11Keyboard::isKeymapChange(const xcb_generic_event_t& event) const {
    // Other devices tell of themselves too, each time that the user's hands change between keyboards.
    const auto& notice = reinterpret_cast<const xcb_xkb_map_notify_event_t&>(event);
    return eventType(event) == m_eventType && notice.deviceID == m_typingDevice;
}

std::vector<std::uint16_t> X11Keyboard::devices() {
    X11InputDevices devices;
    devices.load(m_connection);
    std::vector<std::uint16_t> ours;
    for (const X11InputDevice& device : devices.all())
        if (device.id == m_master ||
            (device.use == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD && device.attachment == m_master))
            ours.push_back(device.id);
    return ours;
}

void X11Keyboard::fake(std::uint8_t type, XKeycode key) {
    xcb_test_fake_input(m_connection.get(), type, static_cast<xcb_keycode_t>(key), XCB_CURRENT_TIME, XCB_NONE,
                        0, 0, 0);
}

void X11Keyboard::releaseAll(const XKeycodeBits& keys) {
    for (std::size_t index = 0; index < keys.size(); ++index) {
        if (keys[index])
            release(XKeycode(index));
    }
}

X11KeyboardState X11Keyboard::state() {
    const auto keysCookie = xcb_query_keymap(m_connection.get());
    const auto stateCookie = xcb_xkb_get_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto keys = m_connection.reply<xcb_query_keymap_reply_t>(keysCookie);
    const auto modifiers = m_connection.reply<xcb_xkb_get_state_reply_t>(stateCookie);
    X11KeyboardState state;
    if (!keys || !modifiers)
        return state;
    state.downKeys = keysIn(keys->keys);
    state.group = modifiers->group;
    state.baseModifiers = modifiers->baseMods;
    state.latchedModifiers = modifiers->latchedMods;
    state.lockedModifiers = modifiers->lockedMods;
    return state;
}

void X11Keyboard::setLockedModifiers(std::uint8_t mask, std::uint8_t locked, std::uint8_t latches) {
    xcb_xkb_latch_lock_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD, mask, locked, 0, 0, latches, 0, 0);
}

std::uint32_t X11Keyboard::filtersOf(std::uint16_t device) {
    const auto controls =
        m_connection.reply<xcb_xkb_get_controls_reply_t>(xcb_xkb_get_controls(m_connection.get(), device));
    return controls ? controls->enabledControls & allFilters : 0;
}

std::uint32_t X11Keyboard::typingFilters() {
    return filtersOf(m_typingDevice);
}

void X11Keyboard::liftTypingFilters(std::uint32_t filters) {
    setFilters(filters, 0);
}

void X11Keyboard::restoreTypingFilters(std::uint32_t filters) {
    // The user may have switched them off meanwhile.
    for (const std::uint16_t device : devices())
        if (device != m_master && device != m_typingDevice)
            filters &= filtersOf(device);
    setFilters(filters, filters);
}

/// The master has the controls of the device that was used last. If that is ours, a change must reach the
/// master too; but what it is told, the server tells all its devices.
void X11Keyboard::setFilters(std::uint32_t mask, std::uint32_t filters) {
    std::map<std::uint16_t, std::uint32_t> users;
    for (const std::uint16_t device : devices())
        if (device != m_master && device != m_typingDevice)
            users[device] = filtersOf(device);
    const auto set = [&](std::uint16_t device, std::uint32_t enabled) {
        const std::uint8_t noKeyRepeats[32] = {};
        xcb_xkb_set_controls(m_connection.get(), device, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, mask, enabled,
                             XCB_XKB_CONTROL_CONTROLS_ENABLED, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             noKeyRepeats);
    };
    set(m_master, filters);
    set(m_typingDevice, filters);
    for (const auto& [device, enabled] : users)
        set(device, enabled & mask);
}

void X11Keyboard::releaseStranded() {
    const auto device = static_cast<std::uint8_t>(m_typingDevice);
    if (!m_connection.reply<xcb_input_open_device_reply_t>(xcb_input_open_device(m_connection.get(), device)))
        return;
    const auto answer = m_connection.reply<xcb_input_query_device_state_reply_t>(
        xcb_input_query_device_state(m_connection.get(), device));
    if (answer) {
        // A list of records, each telling its class and its own length.
        const auto* record = reinterpret_cast<const std::uint8_t*>(answer.get() + 1);
        for (unsigned left = answer->num_classes; left > 0; --left, record += record[1]) {
            if (record[0] != XCB_INPUT_INPUT_CLASS_KEY)
                continue;
            releaseAll(keysIn(reinterpret_cast<const xcb_input_key_state_t*>(record)->keys));
        }
    }
    xcb_input_close_device(m_connection.get(), device);
    m_connection.flush();
}

KeymapWatch::KeymapWatch(X11Keyboard& keyboard)
    : m_keyboard(keyboard) {
    m_keyboard.watchKeymaps(true);
}

KeymapWatch::~KeymapWatch() {
    m_keyboard.watchKeymaps(false);
    m_keyboard.connection().roundTrip();
    hasChanged();
}

bool KeymapWatch::hasChanged() {
    bool changed = false;
    while (const XcbEvent event = m_keyboard.connection().pollEvent())
        changed = changed || m_keyboard.isKeymapChange(*event);
    return changed;
}

} // namespace talvera
