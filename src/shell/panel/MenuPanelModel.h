// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "shell/MenuBarController.h"
#include "shell/panel/LanguageModelNotes.h"
#include "shell/panel/MenuPanelTexts.h"
#include "shell/panel/TargetLanguagePicker.h"
#include "shell/settings/SettingsRows.h"

#include <QObject>

#include <functional>
#include <optional>

namespace talvera {

class AppSettings;
class KeyboardLayout;
class LanguageModel;
class ReadinessMonitor;
class StatsStore;
class TranslateToggleHotkey;

/// What the panel's view shows and what its controls do. Follows everything that it tells. Main thread only.
class MenuPanelModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isReady READ isReady NOTIFY readinessChanged)
    Q_PROPERTY(QString bannerTitle READ bannerTitle NOTIFY readinessChanged)
    Q_PROPERTY(bool microphoneMissing READ microphoneMissing NOTIFY readinessChanged)
    Q_PROPERTY(bool accessibilityMissing READ accessibilityMissing NOTIFY readinessChanged)
    Q_PROPERTY(QString state READ state NOTIFY statusChanged)
    Q_PROPERTY(QString statusTitle READ statusTitle NOTIFY statusChanged)
    Q_PROPERTY(QString statusSubtitle READ statusSubtitle NOTIFY statusChanged)
    Q_PROPERTY(QString statusKeyCap READ statusKeyCap NOTIFY statusChanged)
    Q_PROPERTY(QString orbLabel READ orbLabel NOTIFY statusChanged)
    Q_PROPERTY(talvera::TargetLanguagePicker* targetLanguages READ targetLanguages CONSTANT)
    Q_PROPERTY(QString toggleShortcut READ toggleShortcut NOTIFY toggleShortcutChanged)
    Q_PROPERTY(talvera::LanguageModelNotes languageModel READ languageModel NOTIFY languageModelChanged)
    Q_PROPERTY(talvera::SwitchRow* aiCleanup READ aiCleanup CONSTANT)
    Q_PROPERTY(QString timeSaved READ timeSaved NOTIFY statsChanged)
    Q_PROPERTY(QString dictations READ dictations NOTIFY statsChanged)
    Q_PROPERTY(QString dictationsCaption READ dictationsCaption NOTIFY statsChanged)
    Q_PROPERTY(bool isCheckingForUpdates READ isCheckingForUpdates NOTIFY updateCheckChanged)
    Q_PROPERTY(talvera::MenuPanelTexts* texts READ texts CONSTANT)

public:
    struct Parts {
        MenuBarController& menuBar;
        AppSettings& settings;
        StatsStore& stats;
        ReadinessMonitor& readiness;
        LanguageModel& languageModel;
        KeyboardLayout& keyboardLayout;
        TranslateToggleHotkey& translateToggle;
    };

    /// What the rows at the bottom and the links do; set before the view is shown.
    std::function<void()> onSettings;
    std::function<void()> onCheckForUpdates;
    std::function<void()> onQuit;
    std::function<void()> onLanguageModelSettings;
    /// What to tell the user where the desktop has no settings for what is missing.
    std::function<void(const QString& text)> onAdvice;

    explicit MenuPanelModel(Parts parts);

    /// Nothing is missing that a dictation needs.
    bool isReady() const;
    /// Empty when nothing is missing.
    QString bannerTitle() const;
    bool microphoneMissing() const;
    bool accessibilityMissing() const;

    QString state() const;
    QString statusTitle() const;
    QString statusSubtitle() const;
    /// The hotkey, at rest; else empty.
    QString statusKeyCap() const;
    QString orbLabel() const;

    TargetLanguagePicker* targetLanguages() { return &m_targetLanguages; }
    /// The shortcut that switches translation; empty when there is none that acts.
    QString toggleShortcut() const;
    LanguageModelNotes languageModel() const;
    SwitchRow* aiCleanup() { return &m_aiCleanup; }

    QString timeSaved() const;
    QString dictations() const;
    QString dictationsCaption() const;

    /// Tells from now on whether a search for updates is under way. `isChecking` outlives the model.
    void followUpdateCheck(Published<bool>& isChecking);
    bool isCheckingForUpdates() const { return m_isCheckingForUpdates; }

    MenuPanelTexts* texts() { return &m_texts; }

    Q_INVOKABLE void fixMicrophone();
    Q_INVOKABLE void fixAccessibility();
    Q_INVOKABLE void openLanguageModelSettings() { run(onLanguageModelSettings); }
    Q_INVOKABLE void openSettings() { run(onSettings); }
    Q_INVOKABLE void checkForUpdates() { run(onCheckForUpdates); }
    Q_INVOKABLE void quit() { run(onQuit); }

Q_SIGNALS:
    void readinessChanged();
    void statusChanged();
    void toggleShortcutChanged();
    void languageModelChanged();
    void statsChanged();
    void updateCheckChanged();

private:
    static void run(const std::function<void()>& action) {
        if (action)
            action();
    }
    void follow();
    void advise(const std::optional<QString>& advice);

    Parts m_parts;
    MenuPanelTexts m_texts;
    TargetLanguagePicker m_targetLanguages;
    SwitchRow m_aiCleanup;
    bool m_isCheckingForUpdates = false;
    Cancellables m_cancellables;
};

} // namespace talvera
