// SPDX-License-Identifier: MIT
#include "shell/hud/DictationHUDState.h"

#include <QStringList>

#include <array>

namespace talvera {

QString caseName(const DictationHUDState& state) {
    static const std::array names{QStringLiteral("hidden"),       QStringLiteral("listening"),
                                  QStringLiteral("transcribing"), QStringLiteral("translating"),
                                  QStringLiteral("notice"),       QStringLiteral("permissionRequired")};
    static_assert(std::variant_size_v<DictationHUDState::Value> == names.size());
    return names[state.value.index()];
}

QString inWords(const DictationHUDState& state) {
    QStringList words{caseName(state)};
    if (const auto* translating = state.as<DictationHUDState::Translating>())
        words << translating->targetDisplayName;
    else if (const auto* notice = state.as<DictationHUDState::Notice>())
        words << notice->text << rawValue(notice->tone);
    else if (const auto* card = state.as<DictationHUDState::PermissionRequired>())
        words << rawValue(card->kind);
    return words.join(u' ');
}

} // namespace talvera
