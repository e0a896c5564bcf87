// SPDX-License-Identifier: MIT
#include "shell/settings/ThirdPartyLicences.h"

#include "platform/system/FileSystem.h"
#include "text/Localization.h"

#include <vector>

namespace talvera {

namespace {

/// Few enough for a passage to fit into a small window.
constexpr int linesOfPassage = 16;

/// Their texts are put together by tools/licences.
const std::vector<ThirdParty>& allParties() {
    static const std::vector<ThirdParty> all{
        {QStringLiteral("AT-SPI"), QStringLiteral("LGPL-2.1"), QStringLiteral("at-spi")},
        {QStringLiteral("CLD2"), QStringLiteral("Apache-2.0"), QStringLiteral("cld2")},
        {QStringLiteral("GCC"), QStringLiteral("GPL-3.0, runtime exception"), QStringLiteral("gcc")},
        {QStringLiteral("GLib"), QStringLiteral("LGPL-2.1"), QStringLiteral("glib")},
        {QStringLiteral("GNU C Library"), QStringLiteral("LGPL-2.1"), QStringLiteral("glibc")},
        {QStringLiteral("ICU"), QStringLiteral("Unicode-3.0"), QStringLiteral("icu")},
        {QStringLiteral("JSON for Modern C++"), QStringLiteral("MIT"), QStringLiteral("json")},
        {QStringLiteral("libpulse"), QStringLiteral("LGPL-2.1"), QStringLiteral("libpulse")},
        {QStringLiteral("libsndfile"), QStringLiteral("LGPL-2.1"), QStringLiteral("libsndfile")},
        {QStringLiteral("libsoxr"), QStringLiteral("LGPL-2.1"), QStringLiteral("libsoxr")},
        {QStringLiteral("libxcb"), QStringLiteral("X11"), QStringLiteral("libxcb")},
        {QStringLiteral("libxkbcommon"), QStringLiteral("MIT"), QStringLiteral("libxkbcommon")},
        {QStringLiteral("OpenSSL"), QStringLiteral("Apache-2.0"), QStringLiteral("openssl")},
        {QStringLiteral("QCoro"), QStringLiteral("MIT"), QStringLiteral("qcoro")},
        {QStringLiteral("Qt"), QStringLiteral("LGPL-3.0"), QStringLiteral("qt")},
        {QStringLiteral("SQLite"), QStringLiteral("Public Domain"), QStringLiteral("sqlite")},
        {QStringLiteral("Wayland"), QStringLiteral("MIT"), QStringLiteral("wayland")},
        {QStringLiteral("whisper.cpp, llama.cpp, ggml"), QStringLiteral("MIT"),
         QStringLiteral("whisper.cpp")},
    };
    return all;
}

const ThirdParty& party(int row) {
    return allParties().at(static_cast<std::size_t>(row));
}

/// Divided at empty lines, which stay with what is above them, and where there has been none for long.
QStringList divided(const QString& text) {
    QStringList passages;
    QStringList lines;
    const auto end = [&] {
        if (!lines.join(QString()).trimmed().isEmpty())
            passages << lines.join(u'\n');
        lines.clear();
    };
    for (const auto& line : text.split(u'\n')) {
        lines << line;
        if (line.trimmed().isEmpty() || lines.size() == linesOfPassage)
            end();
    }
    end();
    return passages;
}

} // namespace

ThirdPartyLicences::ThirdPartyLicences(const Parts& parts)
    : m_parts(parts) {}

QString ThirdPartyLicences::title() const {
    return localized("settings.about.thirdParty.title", "Made with");
}

QString ThirdPartyLicences::subtitle() const {
    return localized("settings.about.thirdParty.subtitle", "Choose one to read its licence.");
}

QString ThirdPartyLicences::backText() const {
    return localized("settings.about.thirdParty.back", "Back");
}

QVariantList ThirdPartyLicences::parties() const {
    QVariantList list;
    for (const auto& each : allParties())
        list.append(QVariant::fromValue(each));
    return list;
}

QString ThirdPartyLicences::name() const {
    return isOpen() ? party(m_last).name : QString();
}

QString ThirdPartyLicences::licence() const {
    return isOpen() ? party(m_last).licence : QString();
}

QStringList ThirdPartyLicences::passagesOf(const ThirdParty& party) const {
    const auto path = QStringLiteral("%1/%2.txt").arg(m_parts.directory, party.file);
    try {
        if (auto passages = divided(QString::fromUtf8(m_parts.files.read(path))); !passages.isEmpty())
            return passages;
    } catch (const PlatformError&) {
        // is said below
    }
    return {formatted(localized("settings.about.thirdParty.missing",
                                "The text can't be read. It belongs into this file: %@"),
                      path)};
}

void ThirdPartyLicences::open(int row) {
    m_passages = passagesOf(party(row));
    m_last = row;
    Q_EMIT changed();
}

void ThirdPartyLicences::close() {
    m_passages.clear();
    Q_EMIT changed();
}

void ThirdPartyLicences::forget() {
    m_last = -1;
    close();
}

} // namespace talvera
