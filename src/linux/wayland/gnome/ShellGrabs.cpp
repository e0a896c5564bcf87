// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/ShellGrabs.h"

#include <algorithm>
#include <utility>

namespace talvera {

ShellGrabs::ShellGrabs(std::shared_ptr<const ShellBus> bus)
    : m_bus(std::move(bus)) {
    auto connection = m_bus->connection();
    connection.connect(ShellBus::extensionService, ShellBus::extensionPath, ShellBus::extensionInterface,
                       QStringLiteral("Pressed"), this, SLOT(pressed(uint)));
    connection.connect(ShellBus::extensionService, ShellBus::extensionPath, ShellBus::extensionInterface,
                       QStringLiteral("Released"), this, SLOT(released(uint)));
}

ShellGrabs::~ShellGrabs() {
    hold({});
}

void ShellGrabs::hold(const std::set<ShellAccelerator>& wanted) {
    std::erase_if(m_grabs, [this, &wanted](const auto& held) {
        const auto& [accelerator, grab] = held;
        const bool isWanted = wanted.contains(accelerator);
        if (!isWanted && grab.action.value_or(0) != 0)
            m_bus->tell(QStringLiteral("Ungrab"), {*grab.action});
        return !isWanted;
    });
    for (const auto& accelerator : wanted) {
        if (!m_grabs.contains(accelerator))
            ask(accelerator);
    }
}

std::optional<bool> ShellGrabs::isGranted(const ShellAccelerator& accelerator) const {
    const auto found = m_grabs.find(accelerator);
    if (found == m_grabs.end() || !found->second.action)
        return std::nullopt;
    return *found->second.action != 0;
}

void ShellGrabs::extensionCame() {
    if (std::exchange(m_isExtensionThere, true))
        return;
    for (const auto& [accelerator, grab] : m_grabs)
        ask(accelerator);
}

void ShellGrabs::extensionWent() {
    m_isExtensionThere = false;
    ++m_extension;
    for (auto& [accelerator, grab] : m_grabs)
        grab = {};
}

void ShellGrabs::askForRefused() {
    for (const auto& [accelerator, grab] : m_grabs) {
        if (grab.action == 0U && !grab.isAsked)
            ask(accelerator);
    }
}

void ShellGrabs::ask(const ShellAccelerator& accelerator) {
    m_grabs[accelerator].isAsked = m_isExtensionThere;
    if (!m_isExtensionThere)
        return;
    m_bus->askLater(QStringLiteral("Grab"), {nameOf(accelerator)}, *this,
                    [this, accelerator, asked = m_extension](const QVariantList* answer) {
                        if (asked == m_extension)
                            answered(accelerator,
                                     answer ? std::optional(answer->value(0).toUInt()) : std::nullopt);
                    });
}

void ShellGrabs::answered(const ShellAccelerator& accelerator, std::optional<uint> action) {
    const auto found = m_grabs.find(accelerator);
    // Given up meanwhile, and perhaps asked for again: the second question is still to be answered then.
    if (found == m_grabs.end() || !found->second.isAsked) {
        if (action.value_or(0) != 0)
            m_bus->tell(QStringLiteral("Ungrab"), {*action});
        return;
    }
    found->second = {.isAsked = false, .action = action};
    if (onAnswer)
        onAnswer();
}

void ShellGrabs::pressed(uint action) {
    tell(action, true);
}

void ShellGrabs::released(uint action) {
    tell(action, false);
}

void ShellGrabs::tell(uint action, bool isPress) {
    const auto found = std::ranges::find_if(
        m_grabs, [action](const auto& held) { return action != 0 && held.second.action == action; });
    if (found == m_grabs.end() || !onKey)
        return;
    const auto accelerator = found->first; // what is told may change what is held
    onKey(accelerator, isPress);
}

} // namespace talvera
