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

bool says(Peer& program, const QString& line) {
    for (auto said = program.readLine(); !said.isEmpty(); said = program.readLine()) {
        if (said == line)
            return true;
    }
    return false;
}

SwayTapOwner::SwayTapOwner(EventTapFactory& taps)
    : tap(taps.create([this](const KeyEvent& event) {
        told << (isPress(event) ? u'+' : u'-') + QString::number(static_cast<int>(event.keyCode));
        lastFlags = event.flags;
        return Verdict::Swallow;
    })) {
    tap->setEnabled(true);
}

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
    , m_taps(std::in_place, socket(), layout)
    , m_window("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Keys"}) {
    if (!says(m_window, "focus"))
        throw std::runtime_error("the window doesn't take the focus");
}

SwayKeys::~SwayKeys() {
    for (const auto key : std::vector(m_held))
        m_keys.release(key);
    QFile file(m_configFile);
    if (contentsOf(m_configFile) != m_config && file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(m_config);
        file.close();
        reload();
    }
}

void SwayKeys::press(const std::vector<XKeycode>& pressed) {
    for (const auto key : pressed) {
        m_held.push_back(key);
        m_keys.press(key);
    }
}

void SwayKeys::release(const std::vector<XKeycode>& released) {
    for (const auto key : released) {
        std::erase(m_held, key);
        m_keys.release(key);
    }
}

void SwayKeys::tap(const std::vector<XKeycode>& tapped) {
    press(tapped);
    release({tapped.rbegin(), tapped.rend()});
}

bool SwayKeys::becomes(const std::function<bool()>& condition) {
    return eventually(
        [&condition] {
            QCoreApplication::processEvents();
            return condition();
        },
        patience);
}

/// The keys come in order, so all are there once one comes that nobody has bound.
QStringList SwayKeys::takeKeys() {
    const auto marker = Key::f5;
    m_keys.tap(marker);
    const auto end = u'-' + QString::number(indexOf(marker));
    QStringList keys;
    for (auto line = m_window.readLine(); line != end; line = m_window.readLine()) {
        if (line.isEmpty())
            throw std::runtime_error("the window hears no keys");
        if (line.startsWith(u'-') || (line.startsWith(u'+') && line.mid(1) != end.mid(1)))
            keys << line;
    }
    return keys;
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
