// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "shell/hud/HUDTexts.h"
#include "shell/hud/StateHolder.h"

#include <QObject>

namespace talvera {

class AppSettings;

/// What the HUD's views show, made of the HUD's state and of the languages in the settings.
class HUDModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString state READ state NOTIFY changed)
    Q_PROPERTY(QString line READ line NOTIFY changed)
    Q_PROPERTY(QString spoken READ spoken NOTIFY changed)
    Q_PROPERTY(QString releaseHint READ releaseHint NOTIFY releaseHintChanged)
    Q_PROPERTY(QString languageIndicator READ indicator NOTIFY languagesChanged)
    Q_PROPERTY(double startedAt READ startedAt NOTIFY changed)
    Q_PROPERTY(bool warns READ warns NOTIFY changed)
    Q_PROPERTY(QString noticeSymbol READ noticeSymbol NOTIFY changed)
    Q_PROPERTY(QString cardTitle READ cardTitle NOTIFY changed)
    Q_PROPERTY(QString cardSubtitle READ cardSubtitle NOTIFY changed)
    Q_PROPERTY(QString cardAction READ cardAction NOTIFY changed)
    Q_PROPERTY(QString cardDismiss READ cardDismiss NOTIFY changed)
    Q_PROPERTY(QString cardSymbol READ cardSymbol NOTIFY changed)
    Q_PROPERTY(float level READ level NOTIFY levelChanged)
public:
    /// Both outlive the model.
    HUDModel(StateHolder& holder, AppSettings& settings);

    /// The name of the state's case, such as "listening".
    QString state() const;
    QString line() const { return lineOf(m_state); }
    /// What a screen reader says of it.
    QString spoken() const;
    QString releaseHint() const { return lineOf(DictationHUDState::Listening{}); }
    QString indicator() const;
    /// In milliseconds since 1970; kept while something else is shown.
    double startedAt() const { return m_startedAt; }

    /// The notice's tone and symbol; kept as above.
    bool warns() const { return m_warns; }
    QString noticeSymbol() const;

    /// The permission card; kept as above.
    QString cardTitle() const { return m_card.title; }
    QString cardSubtitle() const { return m_card.subtitle; }
    QString cardAction() const { return m_card.action; }
    QString cardDismiss() const { return m_card.dismiss; }
    QString cardSymbol() const { return m_card.symbol; }

    float level() const { return m_holder.level.get(); }

    Q_INVOKABLE QString recordingTime(double elapsedMilliseconds) const;
    Q_INVOKABLE void dismissPermission() { m_holder.dismissPermission(); }
    Q_INVOKABLE void openPermissionSettings() { m_holder.openPermissionSettings(); }

Q_SIGNALS:
    void changed();
    void languagesChanged();
    void releaseHintChanged();
    void levelChanged();

private:
    void take(const DictationHUDState& state);
    QString lineOf(const DictationHUDState& state) const;

    StateHolder& m_holder;
    AppSettings& m_settings;
    DictationHUDState m_state;
    double m_startedAt = 0;
    bool m_warns = false;
    PermissionCardTexts m_card;
    Cancellables m_subscriptions;
};

} // namespace talvera
