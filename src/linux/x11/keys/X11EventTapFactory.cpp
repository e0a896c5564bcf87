// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11EventTapFactory.h"

#include "linux/x11/keys/X11EventTap.h"

#include <utility>

namespace talvera {

X11EventTapFactory::X11EventTapFactory(MainActor& mainActor, X11Server server, Duration bound)
    : m_group(mainActor, std::move(server), bound) {}

std::unique_ptr<EventTap> X11EventTapFactory::create(EventTap::Callback callback) {
    auto tap = m_group.add(std::move(callback));
    return tap ? std::make_unique<X11EventTap>(m_group, std::move(tap)) : nullptr;
}

} // namespace talvera
