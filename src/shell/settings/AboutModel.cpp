// SPDX-License-Identifier: MIT
#include "shell/settings/AboutModel.h"

#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"
#include "platform/desktop/Pasteboard.h"
#include "platform/system/MachineDescription.h"
#include "text/Localization.h"

#include <functional>
#include <vector>

namespace talvera {

AboutModel::AboutModel(Parts parts)
    : m_parts(parts) {}

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

QString AboutModel::thirdPartyTitle() const {
    return localized("settings.about.thirdParty.title", "Made with");
}

QVariantList AboutModel::thirdParties() const {
    static const std::vector<ThirdParty> rows{
        {QStringLiteral("AT-SPI"), QStringLiteral("LGPL-2.1")},
        {QStringLiteral("CLD2"), QStringLiteral("Apache-2.0")},
        {QStringLiteral("GLib"), QStringLiteral("LGPL-2.1")},
        {QStringLiteral("ICU"), QStringLiteral("Unicode-3.0")},
        {QStringLiteral("JSON for Modern C++"), QStringLiteral("MIT")},
        {QStringLiteral("libpulse"), QStringLiteral("LGPL-2.1")},
        {QStringLiteral("libsndfile"), QStringLiteral("LGPL-2.1")},
        {QStringLiteral("libsoxr"), QStringLiteral("LGPL-2.1")},
        {QStringLiteral("libxcb"), QStringLiteral("X11")},
        {QStringLiteral("libxkbcommon"), QStringLiteral("MIT")},
        {QStringLiteral("OpenSSL"), QStringLiteral("Apache-2.0")},
        {QStringLiteral("QCoro"), QStringLiteral("MIT")},
        {QStringLiteral("Qt"), QStringLiteral("LGPL-3.0")},
        {QStringLiteral("SQLite"), QStringLiteral("Public Domain")},
        {QStringLiteral("whisper.cpp"), QStringLiteral("MIT")},
    };
    QVariantList list;
    for (const auto& row : rows)
        list.append(QVariant::fromValue(row));
    return list;
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
}

void AboutModel::setResult(const QString& text) {
    m_copyResult = text;
    Q_EMIT copied();
}

} // namespace talvera
