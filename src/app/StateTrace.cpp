// SPDX-License-Identifier: MIT
#include "app/StateTrace.h"

#include "platform/sound/MicrophonePermission.h"
#include "platform/system/Console.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/readiness/ReadinessMonitor.h"

namespace talvera {

namespace {

using HUD = DictationHUDState;

QString stateLine(const MenuBarController::State& state) {
    return QStringLiteral("state ") + caseName(state);
}

QString hudLine(const HUD& state) {
    if (const auto* notice = state.as<HUD::Notice>())
        return QStringLiteral("hud notice %1: %2").arg(caseName(notice->tone), notice->text);
    if (const auto* card = state.as<HUD::PermissionRequired>())
        return QStringLiteral("hud permission %1").arg(caseName(card->kind));
    return QStringLiteral("hud ") + caseName(state);
}

QString microphoneLine(const AuthorizationStatus& status) {
    switch (status) {
    case AuthorizationStatus::NotDetermined:
        return QStringLiteral("microphone notDetermined");
    case AuthorizationStatus::Restricted:
        return QStringLiteral("microphone restricted");
    case AuthorizationStatus::Denied:
        return QStringLiteral("microphone denied");
    case AuthorizationStatus::Authorized:
        return QStringLiteral("microphone authorized");
    }
    Q_UNREACHABLE();
}

QString accessibilityLine(const bool& trusted) {
    return trusted ? QStringLiteral("accessibility trusted") : QStringLiteral("accessibility untrusted");
}

} // namespace

bool StateTrace::isWanted() {
    return qgetenv("TALVERA_TRACE") == "1";
}

StateTrace::StateTrace(const Parts& parts)
    : m_console(parts.console) {
    follow(parts.menuBar.state, stateLine);
    follow(parts.hud.stateHolder().state, hudLine);
    follow(parts.readiness.micStatus, microphoneLine);
    follow(parts.readiness.axTrusted, accessibilityLine);
}

template <typename T>
void StateTrace::follow(Published<T>& published, QString (*line)(const T&)) {
    const auto print = [&console = m_console, line](const T& value) {
        console.print(QStringLiteral("[trace] ") + line(value));
    };
    print(published.get());
    m_subscriptions.push_back(published.observe(print));
}

} // namespace talvera
