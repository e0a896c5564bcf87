// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/FakeKeyboard.h"

#include <utility>

#include <fake-input-client-protocol.h>

namespace talvera {

std::unique_ptr<FakeKeyboard> FakeKeyboard::open(std::unique_ptr<WaylandConnection> connection) {
    constexpr std::uint32_t version = 4; // the first with keys
    auto* const input = connection->bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, version);
    if (input == nullptr)
        return nullptr;
    if (org_kde_kwin_fake_input_get_version(input) < version) {
        org_kde_kwin_fake_input_destroy(input);
        return nullptr;
    }
    org_kde_kwin_fake_input_authenticate(input, "Talvera", "pastes what was dictated");
    return std::unique_ptr<FakeKeyboard>(new FakeKeyboard(std::move(connection), input));
}

FakeKeyboard::FakeKeyboard(std::unique_ptr<WaylandConnection> connection, org_kde_kwin_fake_input* input)
    : m_connection(std::move(connection))
    , m_input(input) {}

FakeKeyboard::~FakeKeyboard() {
    org_kde_kwin_fake_input_destroy(m_input);
}

void FakeKeyboard::set(std::uint32_t key, bool isDown) {
    if (!m_connection->isBroken())
        org_kde_kwin_fake_input_keyboard_key(m_input, key, isDown ? 1 : 0);
}

bool FakeKeyboard::finish() {
    return m_connection->roundTrip();
}

} // namespace talvera
