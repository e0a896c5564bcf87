// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QObject>
#include <QString>

namespace talvera {

class OnboardingController;
class ReadinessMonitor;

/// What the wizard says of one permission.
struct PermissionCard {
    Q_GADGET
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString benefit MEMBER benefit CONSTANT)
    Q_PROPERTY(QString why MEMBER why CONSTANT)
    Q_PROPERTY(QString state MEMBER state CONSTANT)
    Q_PROPERTY(QString stateText MEMBER stateText CONSTANT)
    Q_PROPERTY(QString cause MEMBER cause CONSTANT)
    Q_PROPERTY(QString action MEMBER action CONSTANT)

public:
    QString icon;
    QString benefit;
    QString why;
    QString state;     ///< "granted", "needed" or "denied"
    QString stateText; ///< in words
    QString cause;     ///< why it is missing and what helps; empty when it is granted
    QString action;    ///< on its button; empty where a button can't help
};

/// The step of the permissions, and their cards in the demo's place. Main thread only.
class PermissionsModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool allSet READ allSet NOTIFY changed)
    Q_PROPERTY(QString pill READ pill NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString body READ body NOTIFY changed)
    Q_PROPERTY(QString footer READ footer NOTIFY changed)
    Q_PROPERTY(talvera::PermissionCard microphone READ microphone NOTIFY changed)
    Q_PROPERTY(talvera::PermissionCard accessibility READ accessibility NOTIFY changed)
    Q_PROPERTY(talvera::PermissionCard missingMicrophone READ missingMicrophone NOTIFY changed)
    Q_PROPERTY(talvera::PermissionCard missingAccessibility READ missingAccessibility NOTIFY changed)

public:
    PermissionsModel(OnboardingController& controller, ReadinessMonitor& readiness);

    bool allSet() const;
    QString pill() const;
    QString title() const;
    QString body() const;
    /// Below the cards: that all is well, or what will be missing.
    QString footer() const;

    PermissionCard microphone() const;
    PermissionCard accessibility() const;
    /// The same in the words that stand in the demo's place.
    PermissionCard missingMicrophone() const;
    PermissionCard missingAccessibility() const;

    Q_INVOKABLE void allowMicrophone();
    Q_INVOKABLE void allowAccessibility();

Q_SIGNALS:
    void changed();

private:
    OnboardingController& m_controller;
    ReadinessMonitor& m_readiness;
    Cancellables m_cancellables;
};

} // namespace talvera
