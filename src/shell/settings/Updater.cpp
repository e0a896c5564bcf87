// SPDX-License-Identifier: MIT
#include "shell/settings/Updater.h"

#include "platform/desktop/Notifier.h"
#include "shell/hud/DictationHUDController.h"
#include "text/Localization.h"

namespace talvera {

namespace {

using Kind = UpdateAnswer::Kind;

constexpr Duration noticeTime = seconds(6.0);

QString titleOf(const UpdateAnswer& answer) {
    switch (answer.kind) {
    case Kind::UpToDate:
        return localized("updates.upToDate.title", "Talvera is up to date");
    case Kind::Available:
        return formatted(localized("updates.available.title", "Talvera %@ is available"), answer.version);
    case Kind::NotAPackage:
        return localized("updates.notAPackage.title", "This copy of Talvera didn't come from a package");
    case Kind::NoService:
        return localized("updates.noService.title", "This system has no package service to ask for updates");
    case Kind::Failed:
        break;
    }
    return localized("updates.failed.title", "Couldn't check for updates");
}

QString textOf(const UpdateAnswer& answer) {
    switch (answer.kind) {
    case Kind::UpToDate:
        return localized("updates.upToDate.text", "Your system knows no newer version.");
    case Kind::Available:
        return localized("updates.available.text", "Install it with your system's software updates.");
    case Kind::NotAPackage:
    case Kind::NoService:
        return localized("updates.elsewhere.text", "Look for a newer version where you got this one.");
    case Kind::Failed:
        break;
    }
    return localized("updates.failed.text", "Your system's package service didn't answer. Try again later.");
}

bool isGood(const UpdateAnswer& answer) {
    return answer.kind == Kind::UpToDate || answer.kind == Kind::Available;
}

} // namespace

Updater::Updater(UpdateService& service, Notifier& notifier, DictationHUDController& hud)
    : m_service(service)
    , m_notifier(notifier)
    , m_hud(hud) {}

void Updater::checkForUpdates() {
    if (isChecking.get())
        return;
    isChecking.set(true);
    m_service.check(m_lifetime.ifAlive([this](const UpdateAnswer& answer) {
        isChecking.set(false);
        say(answer);
    }));
}

void Updater::say(const UpdateAnswer& answer) {
    m_notifier.notify(titleOf(answer), textOf(answer), m_lifetime.ifAlive([this, answer](bool shown) {
        if (!shown)
            m_hud.showRemark(titleOf(answer),
                             isGood(answer) ? DictationHUDState::NoticeTone::Info
                                            : DictationHUDState::NoticeTone::Warn,
                             noticeTime);
    }));
}

} // namespace talvera
