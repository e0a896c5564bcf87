// SPDX-License-Identifier: MIT
#include "linux/wayland/typing/VirtualKeyboard.h"

#include "linux/support/FileDescriptor.h"
#include "linux/wayland/client/WaylandConnection.h"

#include <chrono>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-client-protocol.h>
#include <wayland-client.h>

namespace talvera {

namespace {

std::uint32_t milliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

/// A file in memory that nobody can change any more, with a zero byte behind the text.
FileDescriptor sealed(const std::string& text) {
    FileDescriptor file(::memfd_create("talvera-keymap", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const auto size = text.size() + 1;
    if (!file.isOpen() || ::write(file.get(), text.c_str(), size) != static_cast<ssize_t>(size))
        return {};
    ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL);
    return file;
}

} // namespace

std::unique_ptr<VirtualKeyboard> VirtualKeyboard::open(WaylandConnection& connection) {
    auto* manager =
        connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
    if (manager == nullptr || connection.seat() == nullptr)
        return nullptr;
    auto* keyboard = ::zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, connection.seat());
    ::zwp_virtual_keyboard_manager_v1_destroy(manager);
    return std::unique_ptr<VirtualKeyboard>(new VirtualKeyboard(connection, keyboard));
}

VirtualKeyboard::VirtualKeyboard(WaylandConnection& connection, zwp_virtual_keyboard_v1* keyboard)
    : m_connection(connection)
    , m_keyboard(keyboard) {}

VirtualKeyboard::~VirtualKeyboard() {
    ::zwp_virtual_keyboard_v1_destroy(m_keyboard);
    m_connection.flush();
}

bool VirtualKeyboard::useKeymap(const std::string& keymap) {
    const auto file = sealed(keymap);
    if (!file.isOpen())
        return false;
    ::zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                                     static_cast<std::uint32_t>(keymap.size() + 1));
    return m_connection.roundTrip();
}

bool VirtualKeyboard::press(std::uint32_t key) {
    return post(key, WL_KEYBOARD_KEY_STATE_PRESSED);
}

bool VirtualKeyboard::release(std::uint32_t key) {
    return post(key, WL_KEYBOARD_KEY_STATE_RELEASED);
}

bool VirtualKeyboard::setModifiers(std::uint32_t down, std::uint32_t locked) {
    ::zwp_virtual_keyboard_v1_modifiers(m_keyboard, down, 0, locked, 0);
    return m_connection.flush();
}

bool VirtualKeyboard::post(std::uint32_t key, std::uint32_t state) {
    ::zwp_virtual_keyboard_v1_key(m_keyboard, milliseconds(), key, state);
    return m_connection.flush();
}

} // namespace talvera
