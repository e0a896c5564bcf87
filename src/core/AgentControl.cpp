// SPDX-License-Identifier: MIT
#include "core/AgentControl.h"

#include "core/AgentCommand.h"
#include "core/AgentStatus.h"
#include "core/AppDelegate.h"
#include "hotkeys/HotkeyManager.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "platform/system/Console.h"
#include "shell/MenuBarController.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

namespace talvera {

namespace {

QString noModelText() {
    return localized("command.status.noModel", "The speech model isn't there yet.");
}

} // namespace

AgentControl::AgentControl(const Parts& parts)
    : m_parts(parts) {}

QString AgentControl::obey(const AgentCommand& command, CommandedHotkey::Begun begun) {
    switch (command.verb) {
    case AgentCommand::Verb::Press:
        m_parts.delegate.commandedHotkey().press(begun);
        return {};
    case AgentCommand::Verb::Release:
        m_parts.delegate.commandedHotkey().release(begun);
        return {};
    case AgentCommand::Verb::Toggle:
        m_parts.delegate.commandedHotkey().toggle();
        return {};
    case AgentCommand::Verb::Translate:
        m_parts.delegate.toggleTranslation();
        return {};
    case AgentCommand::Verb::Panel:
        m_parts.delegate.startedAgain();
        return {};
    case AgentCommand::Verb::Settings:
        m_parts.openSettings(command.section);
        return {};
    case AgentCommand::Verb::Status:
        return command.asJson ? status().json() : status().text();
    }
    Q_UNREACHABLE();
}

AgentStatus AgentControl::status() {
    m_parts.readiness.refresh();
    AgentStatus status{.state = m_parts.menuBar.state.get(),
                       .hasMicrophone = m_parts.readiness.micStatus.get() == AuthorizationStatus::Authorized,
                       .canTypeAndWatchKeys = m_parts.readiness.axTrusted.get(),
                       .hasModel = m_parts.models.isReady(),
                       .hotkey = m_parts.hotkey.watchResult().get(),
                       .spokenLanguage = m_parts.settings.sourceLanguageCode.get(),
                       .targetLanguage = m_parts.settings.targetLanguageCode.get()};
    for (const auto& lack :
         {m_parts.readiness.microphoneLackText(), m_parts.readiness.accessibilityLackText(),
          status.hasModel ? QString() : noModelText()}) {
        if (!lack.isEmpty())
            status.lacks << lack;
    }
    return status;
}

void AgentControl::startedAgain(const LaunchRequest& request) {
    m_parts.console.print(QStringLiteral("[app] Talvera is running already"));
    if (request.opensSettings)
        m_parts.openSettings(request.section);
    else
        m_parts.delegate.startedAgain();
}

} // namespace talvera
