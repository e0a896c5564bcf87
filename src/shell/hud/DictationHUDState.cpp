// SPDX-License-Identifier: MIT
#include "shell/hud/DictationHUDState.h"

#include <array>

namespace talvera {

QString caseName(const DictationHUDState& state) {
    static const std::array names{QStringLiteral("hidden"),       QStringLiteral("listening"),
                                  QStringLiteral("transcribing"), QStringLiteral("translating"),
                                  QStringLiteral("notice"),       QStringLiteral("permissionRequired")};
    static_assert(std::variant_size_v<DictationHUDState::Value> == names.size());
    return names[state.value.index()];
}

QString caseName(DictationHUDState::NoticeTone tone) {
    return tone == DictationHUDState::NoticeTone::Warn ? QStringLiteral("warn") : QStringLiteral("info");
}

QString caseName(DictationHUDState::PermissionKind kind) {
    return kind == DictationHUDState::PermissionKind::Microphone ? QStringLiteral("microphone")
                                                                 : QStringLiteral("accessibility");
}

} // namespace talvera
