// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11Property.h"

namespace talvera {

std::vector<std::uint32_t> X11Property::items() const {
    if (!m_answer || m_answer->format != 32)
        return {};
    const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(m_answer.get()));
    return {items, items + xcb_get_property_value_length(m_answer.get()) / sizeof *items};
}

std::string_view X11Property::bytes() const {
    if (!m_answer || m_answer->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(m_answer.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(m_answer.get()))};
}

} // namespace talvera
