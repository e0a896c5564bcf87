// SPDX-License-Identifier: MIT
#pragma once

#include "text/Localization.h"

#include <QObject>

namespace talvera {

/// The words of the wizard that never change while the program runs.
class OnboardingTexts : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString windowTitle MEMBER windowTitle CONSTANT)
    Q_PROPERTY(QString back MEMBER back CONSTANT)
    Q_PROPERTY(QString questionTitle MEMBER questionTitle CONSTANT)
    Q_PROPERTY(QString questionMessage MEMBER questionMessage CONSTANT)
    Q_PROPERTY(QString questionSettings MEMBER questionSettings CONSTANT)
    Q_PROPERTY(QString questionSkip MEMBER questionSkip CONSTANT)
    Q_PROPERTY(QString questionCancel MEMBER questionCancel CONSTANT)
    Q_PROPERTY(QString welcomePill MEMBER welcomePill CONSTANT)
    Q_PROPERTY(QString headlineSpeak MEMBER headlineSpeak CONSTANT)
    Q_PROPERTY(QString headlineType MEMBER headlineType CONSTANT)
    Q_PROPERTY(QString welcomeBody MEMBER welcomeBody CONSTANT)
    Q_PROPERTY(QString featureFaster MEMBER featureFaster CONSTANT)
    Q_PROPERTY(QString featureOnDevice MEMBER featureOnDevice CONSTANT)
    Q_PROPERTY(QString featureLanguages MEMBER featureLanguages CONSTANT)
    Q_PROPERTY(QString everywhereTitle MEMBER everywhereTitle CONSTANT)
    Q_PROPERTY(QString everywhereBody MEMBER everywhereBody CONSTANT)
    Q_PROPERTY(QString everywhereRecording MEMBER everywhereRecording CONSTANT)

public:
    const QString windowTitle = localized("onboarding.window.title", "Welcome to Talvera");
    const QString back = localized("onboarding.nav.back", "Back");

    const QString questionTitle =
        localized("onboarding.permissions.skipConfirm.title", "Continue without permissions?");
    const QString questionMessage = localized(
        "onboarding.permissions.skipConfirm.message",
        "Talvera won't be able to record or type text until you grant these. You can finish setup from "
        "the menu bar later.");
    const QString questionSettings =
        localized("onboarding.permissions.skipConfirm.openSettings", "Open System Settings");
    const QString questionSkip = localized("onboarding.permissions.skipConfirm.cta", "Continue anyway");
    const QString questionCancel = localized("onboarding.permissions.skipConfirm.cancel", "Go back");

    const QString welcomePill = localized("onboarding.welcome.pill", "Voice-to-text, everywhere on your Mac");
    const QString headlineSpeak = localized("onboarding.welcome.headline.speak", "You speak.");
    const QString headlineType = localized("onboarding.welcome.headline.type", "Talvera types.");
    const QString welcomeBody = localized(
        "onboarding.welcome.body",
        "Hold a key, say what you mean, let go: the text is where your cursor is, in any application.");
    const QString featureFaster = localized("onboarding.welcome.feature.faster", "3× faster than typing");
    const QString featureOnDevice = localized("onboarding.welcome.feature.onDevice", "100% on-device");
    const QString featureLanguages = localized("onboarding.welcome.feature.languages", "99+ languages");

    const QString everywhereTitle = localized("onboarding.everywhere.title", "Wherever your cursor is");
    const QString everywhereBody =
        localized("onboarding.everywhere.body",
                  "Talvera types into the application that you work in. There is nothing to paste.");
    const QString everywhereRecording = localized("onboarding.everywhere.recording", "Hold and speak");
};

} // namespace talvera
