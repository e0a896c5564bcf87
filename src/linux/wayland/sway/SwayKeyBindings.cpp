// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayKeyBindings.h"

#include "linux/wayland/sway/SwayConfig.h"
#include "linux/wayland/sway/keysymOf.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include <xkbcommon/xkbcommon.h>

namespace talvera {

namespace {

SwayBindings difference(const SwayBindings& all, const SwayBindings& without) {
    SwayBindings rest;
    std::ranges::set_difference(all, without, std::inserter(rest, rest.end()));
    return rest;
}

/// Of these, those of a press, or those of its end.
SwayBindings only(bool isRelease, const SwayBindings& bindings) {
    SwayBindings some;
    std::ranges::copy_if(bindings, std::inserter(some, some.end()),
                         [isRelease](const SwayBinding& binding) { return binding.isRelease == isRelease; });
    return some;
}

QJsonObject answerTo(SwayIpc::Request request, const SwayIpc& sway) {
    return QJsonDocument::fromJson(sway.ask(request).value_or(QByteArray())).object();
}

std::vector<SwayCombination> boundByUser(const SwayIpc& sway) {
    const auto text = answerTo(SwayIpc::Request::GetConfig, sway).value(QLatin1String("config")).toString();
    const auto file = answerTo(SwayIpc::Request::GetVersion, sway)
                          .value(QLatin1String("loaded_config_file_name"))
                          .toString();
    const SwayConfig config({.path = QFileInfo(file).canonicalFilePath(), .text = text.toUtf8()},
                            &SwayConfig::filesNamed);
    return config.bound();
}

bool isSame(const SwayCombination& combination, const SwayBinding& binding, xkb_keysym_t keysym) {
    if (combination.modifiers != binding.modifiers)
        return false;
    if (combination.isKeycode)
        return combination.key == QString::number(binding.keycode);
    return xkb_keysym_to_lower(xkb_keysym_from_name(combination.key.toUtf8().constData(),
                                                    XKB_KEYSYM_CASE_INSENSITIVE)) == keysym;
}

} // namespace

SwayKeyBindings::SwayKeyBindings(const QString& socket, KeyboardLayout& layout)
    : m_sway(socket, SwayIpc::longPatience)
    , m_layout(layout)
    , m_guard(socket) {}

SwayKeyBindings::~SwayKeyBindings() {
    hold({});
}

std::vector<WatchResult> SwayKeyBindings::hold(const std::vector<SwayInterest>& interests) {
    SwayBindings wanted;
    for (const auto& interest : interests)
        wanted.merge(bindingsOf(interest.chord, interest.isHeld));
    const auto users = userBindingsAmong(wanted);

    std::vector<WatchResult> results;
    SwayBindings ours;
    for (const auto& interest : interests) {
        auto bindings = bindingsOf(interest.chord, interest.isHeld);
        const bool isTaken = std::ranges::any_of(users, [&interest](const SwayBinding& binding) {
            return binding.key == interest.chord.keyCode && binding.modifiers == interest.chord.modifiers;
        });
        results.push_back(bindings.empty() ? WatchResult::Unavailable
                          : isTaken        ? WatchResult::ChordTaken
                                           : WatchResult::Watching);
        if (!isTaken)
            ours.merge(difference(bindings, users));
    }

    // The binding of an end stays until sway reads its configuration again: sway 1.7 remembers the one whose
    // key is down, and dies of it at the key's release if that binding has been taken away. It keeps no key
    // from the programs.
    const auto unwanted = only(false, difference(m_held, ours));
    const auto missing = difference(ours, m_held);
    const bool isNew = !unwanted.empty() || !missing.empty();
    auto staying = only(true, m_held);
    m_held = ours;
    m_held.merge(staying);
    if (!unwanted.empty())
        run(commandsToUnbind(unwanted));
    if (isNew)
        guardHeld();
    if (!missing.empty() && !run(commandsToBind(missing)))
        std::ranges::replace(results, WatchResult::Watching, WatchResult::Unavailable);
    return results;
}

/// What is bound by now the guard must leave alone: it may be the user's.
void SwayKeyBindings::forget() {
    if (!std::exchange(m_held, {}).empty())
        guardHeld();
}

void SwayKeyBindings::guardHeld() {
    m_guard.afterOurDeath(commandsToUnbind(only(false, m_held)));
}

SwayBindings SwayKeyBindings::userBindingsAmong(const SwayBindings& wanted) const {
    if (wanted.empty())
        return {};
    const auto bound = boundByUser(m_sway);
    std::map<VirtualKey, xkb_keysym_t> keysyms;
    for (const auto& binding : wanted) {
        if (!keysyms.contains(binding.key))
            keysyms[binding.key] = keysymOf(binding.key, m_layout);
    }
    SwayBindings users;
    std::ranges::copy_if(wanted, std::inserter(users, users.end()), [&](const SwayBinding& binding) {
        return std::ranges::any_of(bound, [&](const SwayCombination& combination) {
            return isSame(combination, binding, keysyms.at(binding.key));
        });
    });
    return users;
}

/// Bindings belong to the mode in which they are made, and ours to the one that the user is in mostly.
bool SwayKeyBindings::run(const QByteArray& commands) const {
    const auto state = answerTo(SwayIpc::Request::GetBindingState, m_sway);
    const auto mode = state.value(QLatin1String("name")).toString(QStringLiteral("default"));
    return m_sway.run(mode == QStringLiteral("default") ? commands : inFirstMode(commands, mode));
}

} // namespace talvera
