// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "shell/onboarding/DemoModel.h"
#include "shell/onboarding/DownloadModel.h"
#include "shell/onboarding/HotkeyChoiceModel.h"
#include "shell/onboarding/OnboardingTexts.h"
#include "shell/onboarding/PermissionsModel.h"

#include <QObject>
#include <QString>
#include <QVariantList>

namespace talvera {

class AppSettings;
class KeyboardLayout;
class OnboardingController;
class ReadinessMonitor;

/// What the wizard's view shows and what its controls do. Main thread only.
class OnboardingModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int step READ step NOTIFY stepChanged)
    Q_PROPERTY(int stepCount READ stepCount CONSTANT)
    Q_PROPERTY(QString stepText READ stepText NOTIFY stepChanged)
    Q_PROPERTY(QString primaryText READ primaryText NOTIFY stepChanged)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY stepChanged)
    Q_PROPERTY(bool canGoOn READ canGoOn NOTIFY gateChanged)
    Q_PROPERTY(QString hint READ hint NOTIFY gateChanged)
    Q_PROPERTY(bool asksToSkip READ asksToSkip NOTIFY questionChanged)
    Q_PROPERTY(QString advice READ advice NOTIFY adviceChanged)
    Q_PROPERTY(QVariantList samples READ samples CONSTANT)
    Q_PROPERTY(talvera::OnboardingTexts* texts READ texts CONSTANT)
    Q_PROPERTY(talvera::PermissionsModel* permissions READ permissions CONSTANT)
    Q_PROPERTY(talvera::DownloadModel* download READ download CONSTANT)
    Q_PROPERTY(talvera::HotkeyChoiceModel* hotkey READ hotkey CONSTANT)
    Q_PROPERTY(talvera::DemoModel* demo READ demo CONSTANT)

public:
    /// All of it outlives the model.
    struct Parts {
        OnboardingController& controller;
        ModelDownloader& downloader;
        ReadinessMonitor& readiness;
        AppSettings& settings;
        KeyboardLayout& keyboardLayout;
        HotkeyRecorderModel* recorder = nullptr; ///< of the hotkey; null where no chord can be recorded
    };

    explicit OnboardingModel(const Parts& parts);
    ~OnboardingModel() override;

    int step() const;
    int stepCount() const;
    QString stepText() const;
    QString primaryText() const;
    bool canGoBack() const { return step() > 0; }
    bool canGoOn() const;
    QString hint() const;
    bool asksToSkip() const;
    /// What the user can do where the desktop has no settings to open; empty on the next step.
    QString advice() const { return m_advice; }
    QVariantList samples() const;

    OnboardingTexts* texts() { return &m_texts; }
    PermissionsModel* permissions() { return &m_permissions; }
    DownloadModel* download() { return &m_download; }
    HotkeyChoiceModel* hotkey() { return &m_hotkey; }
    DemoModel* demo() { return &m_demo; }

    Q_INVOKABLE void pressPrimary();
    Q_INVOKABLE void back();
    Q_INVOKABLE void skipPermissions();
    Q_INVOKABLE void openSettingsInstead();
    Q_INVOKABLE void dismissQuestion();

Q_SIGNALS:
    void stepChanged();
    void gateChanged();
    void questionChanged();
    void adviceChanged();

private:
    void setAdvice(const QString& advice);

    OnboardingController& m_controller;
    OnboardingTexts m_texts;
    PermissionsModel m_permissions;
    DownloadModel m_download;
    HotkeyChoiceModel m_hotkey;
    DemoModel m_demo;
    QString m_advice;
    Cancellables m_cancellables;
};

} // namespace talvera
