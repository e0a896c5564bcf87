// SPDX-License-Identifier: MIT
#pragma once

#include "language/AIAvailabilityState.h"
#include "platform/language/LanguageModelChoice.h"
#include "shell/settings/SettingsRows.h"

namespace talvera {

class AppSettings;
class LanguageModel;
class ReadinessMonitor;

/// The section of the clean-up by the language model. Main thread only.
class CleanupSettings final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString fillerTitle READ fillerTitle CONSTANT)
    Q_PROPERTY(QString fillerSubtitle READ fillerSubtitle CONSTANT)
    Q_PROPERTY(talvera::ChoiceRow* tone READ tone CONSTANT)
    Q_PROPERTY(talvera::ChoiceRow* models READ models CONSTANT)
    Q_PROPERTY(bool offersToAddModel READ offersToAddModel NOTIFY modelChanged)
    Q_PROPERTY(QString addModelTitle READ addModelTitle CONSTANT)
    Q_PROPERTY(QString addModelSubtitle READ addModelSubtitle CONSTANT)
    Q_PROPERTY(QString addModelText READ addModelText CONSTANT)
    Q_PROPERTY(QString modelTitle READ modelTitle CONSTANT)
    Q_PROPERTY(QString modelText READ modelText NOTIFY modelChanged)
    Q_PROPERTY(bool isModelAvailable READ isModelAvailable NOTIFY modelChanged)
    Q_PROPERTY(QString openModelSettingsText READ openModelSettingsText NOTIFY modelChanged)

public:
    /// All of it outlives the model.
    struct Parts {
        AppSettings& settings;
        ReadinessMonitor& readiness;
        LanguageModel& model;
        LanguageModelChoice& choice; ///< of the model
        /// Opens the settings of the language model, which are the folder that models are put into.
        std::function<void()> openModelSettings;
    };

    explicit CleanupSettings(Parts parts);

    /// To be called when the section comes into view: looks which models there are.
    Q_INVOKABLE void appear();

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

    /// Which of the models is used; shown while there is one, or the chosen one has gone.
    ChoiceRow* models() { return &m_models; }
    /// One more can be put there, and nothing else in view leads there.
    bool offersToAddModel() const;
    QString addModelTitle() const;
    QString addModelSubtitle() const;
    QString addModelText() const;

Q_SIGNALS:
    void modelChanged();

private:
    AIAvailabilityState state() const;
    bool isModelGone() const;
    std::vector<LanguageModelChoice::Offer> knownModels() const;
    std::vector<ChoiceRow::Choice> choicesOfModels() const;
    QString chosenModel() const;
    void followModels();

    const Parts m_parts;
    ChoiceRow m_tone;
    ChoiceRow m_models;
    Subscription m_stateChanges;
    Subscription m_modelChanges;
};

} // namespace talvera
