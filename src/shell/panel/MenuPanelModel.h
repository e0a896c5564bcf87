// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "shell/MenuBarController.h"
#include "shell/panel/TargetLanguagePicker.h"

#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace talvera {

class AppSettings;
class KeyboardLayout;
class LanguageModel;
class ReadinessMonitor;
class StatsStore;

/// What the panel's view shows and what its controls do. Follows everything that it tells. Main thread only.
class MenuPanelModel final : public QObject {
    Q_OBJECT
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
    Q_PROPERTY(bool languageModelAvailable READ languageModelAvailable NOTIFY languageModelChanged)
    Q_PROPERTY(bool aiCleanupEnabled READ aiCleanupEnabled WRITE setAICleanupEnabled NOTIFY cleanupChanged)
    Q_PROPERTY(QString timeSaved READ timeSaved NOTIFY statsChanged)
    Q_PROPERTY(QString dictations READ dictations NOTIFY statsChanged)
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)

public:
    struct Parts {
        MenuBarController& menuBar;
        AppSettings& settings;
        StatsStore& stats;
        ReadinessMonitor& readiness;
        LanguageModel& languageModel;
        KeyboardLayout& keyboardLayout;
    };

    /// What the rows at the bottom and the links do; set before the view is shown.
    std::function<void()> onSettings;
    std::function<void()> onCheckForUpdates;
    std::function<void()> onQuit;
    std::function<void()> onLanguageModelSettings;
    /// What to tell the user where the desktop has no settings for what is missing.
    std::function<void(const QString& text)> onAdvice;

    explicit MenuPanelModel(Parts parts);

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
    /// The shortcut that switches translation; empty when there is none.
    QString toggleShortcut() const;
    bool languageModelAvailable() const;
    bool aiCleanupEnabled() const;
    void setAICleanupEnabled(bool enabled);

    QString timeSaved() const;
    QString dictations() const;

    /// The words that never change while the program runs, by the names that the view gives them.
    QVariantMap texts() const;

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
    void cleanupChanged();
    void statsChanged();

private:
    static void run(const std::function<void()>& action) {
        if (action)
            action();
    }
    void follow();
    void advise(const std::optional<QString>& advice);

    Parts m_parts;
    TargetLanguagePicker m_targetLanguages;
    Cancellables m_cancellables;
};

} // namespace talvera
