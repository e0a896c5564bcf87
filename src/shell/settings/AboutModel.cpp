// SPDX-License-Identifier: MIT
#include "shell/settings/AboutModel.h"

#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"
#include "platform/desktop/Pasteboard.h"
#include "platform/system/MachineDescription.h"
#include "text/Localization.h"

#include <functional>

namespace talvera {

AboutModel::AboutModel(const Parts& parts)
    : m_parts(parts)
    , m_thirdParties(parts.licences) {}

QString AboutModel::title() const {
    return localized("settings.about.title", "About Talvera");
}

QString AboutModel::subtitle() const {
    return localized("settings.about.subtitle", "Push-to-talk dictation that stays on this computer.");
}

QString AboutModel::version() const {
    return formatted(localized("settings.about.version", "Version %@"), QStringLiteral(TALVERA_VERSION));
}

QString AboutModel::licenceTitle() const {
    return localized("settings.about.licence.title", "Licence");
}

QString AboutModel::licence() const {
    return localized("settings.about.licence.text",
                     "Talvera is free software under the MIT licence: you may use, change and share it.");
}

QString AboutModel::detailsTitle() const {
    return localized("settings.about.details.title", "Report a problem");
}

QString AboutModel::detailsSubtitle() const {
    return localized("settings.about.details.subtitle",
                     "Versions, desktop, session and devices, as text to paste into a report. Never a word "
                     "of what you said.");
}

QString AboutModel::copyText() const {
    return localized("settings.about.details.copy", "Copy details for a report");
}

QString AboutModel::details() const {
    QString text = QStringLiteral("Talvera: " TALVERA_VERSION "\n");
    for (const auto& [name, value] : m_parts.machine.facts())
        text += QStringLiteral("%1: %2\n").arg(name, value);
    return text;
}

void AboutModel::copyDetails() {
    const std::function<void(bool)> tell = m_lifetime.ifAlive([this](bool isThere) {
        setResult(isThere ? localized("settings.about.details.copied", "Copied to the clipboard.")
                          : localized("settings.about.details.notCopied", "The clipboard can't be had."));
    });
    m_parts.typing.async([&actor = m_parts.actor, &pasteboard = m_parts.pasteboard, text = details(), tell] {
        const bool isThere = pasteboard.setString(text);
        actor.post([tell, isThere] { tell(isThere); });
    });
}

void AboutModel::forget() {
    setResult({});
    m_thirdParties.forget();
}

void AboutModel::setResult(const QString& text) {
    m_copyResult = text;
    Q_EMIT copied();
}

} // namespace talvera
