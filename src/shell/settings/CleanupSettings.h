// SPDX-License-Identifier: MIT
#pragma once

#include "language/AIAvailabilityState.h"
#include "shell/settings/SettingsRows.h"

namespace talvera {

class AppSettings;
class ReadinessMonitor;

/// The section of the clean-up by the language model. Main thread only.
class CleanupSettings final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString fillerTitle READ fillerTitle CONSTANT)
    Q_PROPERTY(QString fillerSubtitle READ fillerSubtitle CONSTANT)
    Q_PROPERTY(talvera::ChoiceRow* tone READ tone CONSTANT)
    Q_PROPERTY(QString modelTitle READ modelTitle CONSTANT)
    Q_PROPERTY(QString modelText READ modelText NOTIFY modelChanged)
    Q_PROPERTY(bool isModelAvailable READ isModelAvailable NOTIFY modelChanged)
    Q_PROPERTY(QString openModelSettingsText READ openModelSettingsText NOTIFY modelChanged)

public:
    /// All of it outlives the model.
    struct Parts {
        AppSettings& settings;
        ReadinessMonitor& readiness;
        /// Opens the settings of the language model.
        std::function<void()> openModelSettings;
    };

    explicit CleanupSettings(Parts parts);

    QString fillerTitle() const;
    QString fillerSubtitle() const;
    ChoiceRow* tone() { return &m_tone; }

    /// What there is to say of the language model.
    QString modelTitle() const;
    QString modelText() const;
    bool isModelAvailable() const;
    /// On the button to its settings; empty where they can't help.
    QString openModelSettingsText() const;
    Q_INVOKABLE void openModelSettings() const { m_parts.openModelSettings(); }

Q_SIGNALS:
    void modelChanged();

private:
    AIAvailabilityState state() const;

    const Parts m_parts;
    ChoiceRow m_tone;
    Subscription m_modelChanges;
};

} // namespace talvera
