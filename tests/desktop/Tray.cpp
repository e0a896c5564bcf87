// SPDX-License-Identifier: MIT
#include "Tray.h"

#include "X11Windows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QFile>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

namespace talvera::test {

namespace {

constexpr std::chrono::seconds patience{20};

/// A panel at the bottom of the screen with nothing but its tray in it.
constexpr char xfcePanel[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=10;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="32"/>
      <property name="length" type="uint" value="100"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";

void writeXfceSettings() {
    const QDir home(qEnvironmentVariable("XDG_CONFIG_HOME"));
    const QString directory = "xfce4/xfconf/xfce-perchannel-xml";
    home.mkpath(directory);
    QFile file(home.filePath(directory + "/xfce4-panel.xml"));
    if (!file.open(QFile::WriteOnly) || file.write(xfcePanel) < 0)
        throw std::runtime_error("the panel's settings can't be written");
}

QVariant watcherProperty(const char* name) {
    auto question = QDBusMessage::createMethodCall("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                                   "org.freedesktop.DBus.Properties", "Get");
    question << "org.kde.StatusNotifierWatcher" << name;
    const QDBusReply<QDBusVariant> answer = QDBusConnection::sessionBus().call(question);
    return answer.isValid() ? answer.value().variant() : QVariant();
}

bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

} // namespace

Tray::Tray(Kind kind)
    : m_kind(kind) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    if (kind == Kind::X11) {
        m_process.start("trayer", {"--edge", "top", "--align", "left", "--widthtype", "pixel", "--width",
                                   "200", "--height", "28", "--transparent", "false"});
    } else {
        writeXfceSettings();
        m_process.start("xfce4-panel", {"--disable-wm-check"});
    }
    if (!m_process.waitForStarted() || !eventually([this] { return isReady(); }))
        throw std::runtime_error("no tray has come up");
}

Tray::~Tray() {
    m_process.terminate();
    if (!m_process.waitForFinished(5000))
        m_process.kill();
    m_process.waitForFinished();
}

void Tray::kill() {
    m_process.kill();
    m_process.waitForFinished();
}

bool Tray::isReady() const {
    return m_kind == Kind::X11 ? X11Windows().hasTray()
                               : watcherProperty("IsStatusNotifierHostRegistered").toBool();
}

bool Tray::hasIcon() const {
    const QRect around(icon() - QPoint(10, 10), QSize(20, 20));
    if (m_kind == Kind::X11)
        return X11Windows().viewable("talvera", QSize(8, 8)).has_value();
    return !watcherProperty("RegisteredStatusNotifierItems").toStringList().isEmpty() &&
           X11Windows().isDrawnOn(around);
}

bool Tray::waitForIcon() const {
    return eventually([this] { return hasIcon(); });
}

QPoint Tray::icon() const {
    if (m_kind == Kind::X11)
        return X11Windows().viewable("talvera", QSize(8, 8)).value_or(QRect()).center();
    return {16, X11Windows().screen().height() - 16};
}

} // namespace talvera::test
