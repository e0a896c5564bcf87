// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "persistence/Setting.h"
#include "text/CaseNames.h"

#include <functional>
#include <type_traits>
#include <utility>

namespace talvera {

/// What a control shows, what it does when the user changes it, and how it hears of changes. Main thread
/// only; a setting behind it outlives it.
template <typename T>
struct Binding {
    std::function<T()> read;
    std::function<void(const T&)> assign;
    std::function<Subscription(std::function<void()> changed)> observe;
};

/// A setting that a control shows as `show` says, and that it changes by `assign`.
template <typename T, typename Stored>
Binding<T> boundAs(Setting<Stored>& setting, std::function<T(const Stored&)> show,
                   std::function<void(const T&)> assign) {
    return {.read = [&setting, show = std::move(show)] { return show(setting.get()); },
            .assign = std::move(assign),
            .observe =
                [&setting](std::function<void()> changed) {
                    return setting.observe([changed = std::move(changed)](const Stored&) { changed(); });
                }};
}

/// A setting as it stands: a control shows its value, and assigns it. An enumeration goes by its names.
template <typename Stored>
auto bound(Setting<Stored>& setting) {
    if constexpr (NamedCases<Stored>)
        return boundAs<QString, Stored>(setting, rawValue<Stored>, [&setting](const QString& name) {
            if (const auto found = fromRawValue<Stored>(name))
                setting.set(*found);
        });
    else
        return boundAs<Stored, Stored>(
            setting, [](const Stored& value) { return value; },
            [&setting](const Stored& value) { setting.set(value); });
}

/// A setting of two values, as a switch shows it.
template <typename Stored>
Binding<bool> boundToSwitch(Setting<Stored>& setting, std::type_identity_t<Stored> on,
                            std::type_identity_t<Stored> off) {
    return boundAs<bool, Stored>(
        setting, [on](const Stored& value) { return value == on; },
        [&setting, on, off](const bool& isOn) { setting.set(isOn ? on : off); });
}

} // namespace talvera
