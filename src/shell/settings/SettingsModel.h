// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/AboutModel.h"
#include "shell/settings/CleanupSettings.h"
#include "shell/settings/GeneralSettings.h"
#include "shell/settings/HotkeySettings.h"
#include "shell/settings/LanguageSettings.h"
#include "shell/settings/SettingsSectionID.h"

#include <QObject>
#include <QVariantList>

#include <optional>

namespace talvera {

/// A section as the sidebar and its head tell it.
struct SettingsSection {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString subtitle MEMBER subtitle CONSTANT)

public:
    QString id; ///< the name of a SettingsSectionID
    QString icon;
    QString title;
    QString subtitle;
};

/// What the settings window shows and what its controls do. Main thread only.
class SettingsModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString windowTitle READ windowTitle CONSTANT)
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)
    Q_PROPERTY(QString section READ section NOTIFY sectionChanged)
    Q_PROPERTY(QString sectionTitle READ sectionTitle NOTIFY sectionChanged)
    Q_PROPERTY(QString sectionSubtitle READ sectionSubtitle NOTIFY sectionChanged)
    Q_PROPERTY(bool showsAbout READ showsAbout NOTIFY sectionChanged)
    Q_PROPERTY(talvera::GeneralSettings* general READ general CONSTANT)
    Q_PROPERTY(talvera::HotkeySettings* hotkey READ hotkey CONSTANT)
    Q_PROPERTY(talvera::LanguageSettings* language READ language CONSTANT)
    Q_PROPERTY(talvera::CleanupSettings* ai READ ai CONSTANT)
    Q_PROPERTY(QStringList privacyClaims READ privacyClaims CONSTANT)
    Q_PROPERTY(talvera::AboutModel* about READ about CONSTANT)

public:
    /// All of it outlives the model.
    struct Parts {
        GeneralSettings::Parts general;
        HotkeySettings::Parts hotkey;
        HotkeyRecorderModel& toggleRecorder;
        CleanupSettings::Parts cleanup;
        AboutModel::Parts about;
    };

    explicit SettingsModel(const Parts& parts);

    QString windowTitle() const;
    /// Of SettingsSection, in the order of the sidebar.
    QVariantList sections() const;

    /// The section in view, by its name; empty while "About" is.
    QString section() const;
    QString sectionTitle() const;
    QString sectionSubtitle() const;
    bool showsAbout() const { return !m_section; }
    void select(SettingsSectionID section);
    /// The same by a name; names of no section are left alone.
    Q_INVOKABLE void select(const QString& name);
    Q_INVOKABLE void selectAbout();

    GeneralSettings* general() { return &m_general; }
    HotkeySettings* hotkey() { return &m_hotkey; }
    LanguageSettings* language() { return &m_language; }
    CleanupSettings* ai() { return &m_cleanup; }
    QStringList privacyClaims() const;
    AboutModel* about() { return &m_about; }

Q_SIGNALS:
    void sectionChanged();

private:
    void show(std::optional<SettingsSectionID> section);

    std::optional<SettingsSectionID> m_section = SettingsSectionID::General; ///< none is "About"
    GeneralSettings m_general;
    HotkeySettings m_hotkey;
    LanguageSettings m_language;
    CleanupSettings m_cleanup;
    AboutModel m_about;
};

} // namespace talvera
