// SPDX-License-Identifier: MIT
#include "linux/xdg/PortalAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace talvera {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto group = QStringLiteral("org.freedesktop.appearance");
const auto key = QStringLiteral("color-scheme");

enum Scheme : uint { NoPreference = 0, PreferDark = 1, PreferLight = 2 };

bool paletteIsDark() {
    const auto palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

} // namespace

PortalAppearance::PortalAppearance()
    : m_scheme(NoPreference) {
    qApp->installEventFilter(this);
    update();
    QDBusConnection::sessionBus().connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    askPortal();
}

PortalAppearance::~PortalAppearance() = default;

bool PortalAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        update();
    return false;
}

void PortalAppearance::settingChanged(const QString& changedGroup, const QString& changedKey,
                                      const QDBusVariant& value) {
    if (changedGroup == group && changedKey == key)
        apply(value.variant());
}

void PortalAppearance::askPortal() {
    auto question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << group << key;
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid())
            apply(reply.value().variant());
        answer->deleteLater();
    });
}

void PortalAppearance::apply(const QVariant& answer) {
    // The answer to a question is wrapped once more than the news of a change.
    const auto value = answer.canConvert<QDBusVariant>() ? answer.value<QDBusVariant>().variant() : answer;
    m_scheme = value.toUInt();
    update();
}

void PortalAppearance::update() {
    const bool dark = m_scheme == PreferDark || (m_scheme != PreferLight && paletteIsDark());
    if (dark != isDark.get())
        isDark.set(dark);
}

} // namespace talvera
