// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QObject>
#include <QString>

namespace talvera {

class AppSettings;
class KeyboardLayout;
class OnboardingController;

/// The step in which the user dictates for the first time. Main thread only.
class DemoModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY stateChanged)
    Q_PROPERTY(QString bodyBefore READ bodyBefore NOTIFY hotkeyChanged)
    Q_PROPERTY(QString hotkey READ hotkey NOTIFY hotkeyChanged)
    Q_PROPERTY(QString bodyAfter READ bodyAfter NOTIFY hotkeyChanged)
    Q_PROPERTY(QString missingBody READ missingBody CONSTANT)
    Q_PROPERTY(bool canRun READ canRun NOTIFY canRunChanged)
    Q_PROPERTY(QString state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString output READ output NOTIFY stateChanged)
    Q_PROPERTY(QString transcript READ transcript NOTIFY stateChanged)
    Q_PROPERTY(QString outputTitle READ outputTitle CONSTANT)
    Q_PROPERTY(QString caption READ caption NOTIFY stateChanged)
    Q_PROPERTY(double level READ level NOTIFY levelChanged)

public:
    DemoModel(OnboardingController& controller, AppSettings& settings, KeyboardLayout& layout);

    QString title() const;
    QString bodyBefore() const;
    QString hotkey() const;
    QString bodyAfter() const;
    QString missingBody() const;
    /// Nothing is missing that a dictation needs.
    bool canRun() const;

    /// "idle", "recording", "transcribing", "done" or "error".
    QString state() const;
    /// What the output area says where there is no transcript; else empty.
    QString output() const;
    /// What was said; empty unless there is a result with words in it.
    QString transcript() const;
    /// What the output area is called.
    QString outputTitle() const;
    /// On the button that is held.
    QString caption() const;
    /// How loud it is while it records, 0 to 1.
    double level() const;

    Q_INVOKABLE void pressStart();
    Q_INVOKABLE void pressEnd();

Q_SIGNALS:
    void hotkeyChanged();
    void canRunChanged();
    void stateChanged();
    void levelChanged();

private:
    OnboardingController& m_controller;
    AppSettings& m_settings;
    KeyboardLayout& m_layout;
    bool m_isButtonHeld = false; ///< so that no tap of the hotkey ends the recording
    Cancellables m_cancellables;
};

} // namespace talvera
