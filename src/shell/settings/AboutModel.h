// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "shell/settings/ThirdPartyLicences.h"

#include <QObject>
#include <QString>

namespace talvera {

class MachineDescription;
class MainActor;
class Pasteboard;
class SerialQueue;

/// What the program is, and what a report of a fault needs to say of where it runs. Main thread only.
class AboutModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString licenceTitle READ licenceTitle CONSTANT)
    Q_PROPERTY(QString licence READ licence CONSTANT)
    Q_PROPERTY(talvera::ThirdPartyLicences* thirdParties READ thirdParties CONSTANT)
    Q_PROPERTY(QString detailsTitle READ detailsTitle CONSTANT)
    Q_PROPERTY(QString detailsSubtitle READ detailsSubtitle CONSTANT)
    Q_PROPERTY(QString copyText READ copyText CONSTANT)
    Q_PROPERTY(QString copyResult READ copyResult NOTIFY copied)

public:
    /// All of it outlives the model.
    struct Parts {
        MainActor& actor;
        MachineDescription& machine;
        Pasteboard& pasteboard;
        SerialQueue& typing; ///< where the clipboard is written, so that no paste under way gets our text
        ThirdPartyLicences::Parts licences;
    };

    explicit AboutModel(const Parts& parts);

    QString title() const;
    QString subtitle() const;
    QString version() const;
    QString licenceTitle() const;
    QString licence() const;
    ThirdPartyLicences* thirdParties() { return &m_thirdParties; }

    QString detailsTitle() const;
    QString detailsSubtitle() const;
    QString copyText() const;
    /// What became of the last copy; empty before the first and after forget().
    QString copyResult() const { return m_copyResult; }

    /// The report's part that the program knows: in English, for those who read reports, with no word of what
    /// was said.
    QString details() const;
    /// Puts it on the clipboard, and tells of it by `copied`.
    Q_INVOKABLE void copyDetails();
    /// As it was before anything was done in it.
    void forget();

Q_SIGNALS:
    void copied();

private:
    void setResult(const QString& text);

    const Parts m_parts;
    ThirdPartyLicences m_thirdParties;
    QString m_copyResult;
    Lifetime m_lifetime;
};

} // namespace talvera
