// SPDX-License-Identifier: MIT
#include "SwayKeys.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

#include <stdexcept>

namespace talvera::test {

namespace {

SwayIpc patientIpc() {
    return SwayIpc(SwayKeys::socket(), SwayKeys::patience);
}

QString configFile() {
    const auto version = patientIpc().ask(SwayIpc::Request::GetVersion).value_or(QByteArray());
    return QJsonDocument::fromJson(version).object()["loaded_config_file_name"].toString();
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no configuration");
    return file.readAll();
}

} // namespace

SwayKeys::SwayKeys()
    : layout({{VirtualKey::Space, " "}, {VirtualKey::A, "a"}})
    , m_configFile(configFile())
    , m_config(contentsOf(m_configFile))
    , m_events(SwayEvents::hear(socket(),
                                [this](SwayEvents::Kind kind, const QJsonObject& event) {
                                    if (kind == SwayEvents::Kind::Binding)
                                        m_commands << event["binding"].toObject()["command"].toString();
                                    else if (kind == SwayEvents::Kind::Mode)
                                        m_modes << event["change"].toString();
                                    else if (event["change"].toString() == "reload")
                                        ++m_reloads;
                                }))
    , m_taps(std::in_place, socket(), layout) {}

SwayKeys::~SwayKeys() {
    QFile file(m_configFile);
    if (contentsOf(m_configFile) != m_config && file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(m_config);
        file.close();
        reload();
    }
}

void SwayKeys::configure(const QByteArray& lines) {
    QFile file(m_configFile);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw std::runtime_error("the configuration can't be written");
    file.write(m_config + lines);
    file.close();
    reload();
}

void SwayKeys::reload() {
    const auto before = m_reloads;
    if (QProcess::execute("swaymsg", {"-q", "reload"}) != 0 || !becomes([&] { return m_reloads > before; }))
        throw std::runtime_error("sway doesn't read its configuration");
    // What the taps are told on their own connection is there when sway has answered once more.
    if (!patientIpc().isThere())
        throw std::runtime_error("sway doesn't answer");
    QCoreApplication::processEvents();
}

} // namespace talvera::test
