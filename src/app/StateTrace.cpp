// SPDX-License-Identifier: MIT
#include "app/StateTrace.h"

#include "platform/sound/MicrophonePermission.h"
#include "platform/system/Console.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/readiness/ReadinessMonitor.h"

namespace talvera {

namespace {

QString menuLine(const MenuBarController::State& state) {
    return QStringLiteral("menu ") + rawValue(state);
}

QString hudLine(const DictationHUDState& state) {
    return QStringLiteral("hud ") + inWords(state);
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

QString wizardLine(const int& step) {
    return QStringLiteral("wizard step %1").arg(step);
}

/// Never the words of its error or its text.
QString demoLine(const DemoPhase& phase) {
    return QStringLiteral("demo ") + rawValue(phase.kind);
}

} // namespace

bool StateTrace::isWanted() {
    return qgetenv("TALVERA_TRACE") == "1";
}

StateTrace::StateTrace(const Parts& parts)
    : m_console(parts.console) {
    follow(parts.menuBar.state, menuLine);
    follow(parts.hud.stateHolder().state, hudLine);
    follow(parts.readiness.micStatus, microphoneLine);
    follow(parts.readiness.axTrusted, accessibilityLine);
    follow(parts.onboarding.step, wizardLine);
    follow(parts.onboarding.demoPhase, demoLine);
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
