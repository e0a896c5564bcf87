// SPDX-License-Identifier: MIT
#include "app/LinuxDescription.h"

#include "linux/pulse/PulseConnection.h"

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QSysInfo>
#include <QThread>

#include <cmath>

namespace talvera {

namespace {

QString orNone(const QString& text) {
    return text.isEmpty() ? QStringLiteral("none") : text;
}

QString processor() {
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QSysInfo::currentCpuArchitecture();
    for (auto line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        if (line.startsWith("model name"))
            return QString::fromUtf8(line.mid(line.indexOf(':') + 1)).simplified();
    }
    return QSysInfo::currentCpuArchitecture();
}

QString screens() {
    QStringList all;
    for (const auto* screen : QGuiApplication::screens()) {
        const auto pixels = screen->size() * screen->devicePixelRatio();
        all << QStringLiteral("%1×%2 at %3 %")
                   .arg(pixels.width())
                   .arg(pixels.height())
                   .arg(std::lround(screen->devicePixelRatio() * 100));
    }
    return orNone(all.join(QStringLiteral(", ")));
}

} // namespace

std::vector<MachineFact> LinuxDescription::facts() {
    QString server = QStringLiteral("none");
    QString microphone = QStringLiteral("none");
    {
        const PulseLoop::Lock lock(m_sound.loop());
        if (m_sound.context())
            server = m_sound.isPipeWire() ? QStringLiteral("PipeWire") : QStringLiteral("PulseAudio");
        if (const auto& found = m_sound.microphone())
            microphone = QStringLiteral("%1, %2 Hz, %3 channels")
                             .arg(QString::fromStdString(found->device))
                             .arg(found->format.sampleRate)
                             .arg(found->format.channels);
    }
    return {{QStringLiteral("System"), QSysInfo::prettyProductName()},
            {QStringLiteral("Kernel"), QSysInfo::kernelVersion() + u' ' + QSysInfo::currentCpuArchitecture()},
            {QStringLiteral("Qt"), QString::fromLatin1(qVersion())},
            {QStringLiteral("Desktop"), orNone(qEnvironmentVariable("XDG_CURRENT_DESKTOP"))},
            {QStringLiteral("Session"), orNone(qEnvironmentVariable("XDG_SESSION_TYPE")) +
                                            QStringLiteral(", windows by ") +
                                            QGuiApplication::platformName()},
            {QStringLiteral("Screens"), screens()},
            {QStringLiteral("Recognition"), QStringLiteral("on the processor, %1, %2 threads")
                                                .arg(processor())
                                                .arg(QThread::idealThreadCount())},
            {QStringLiteral("Sound server"), server},
            {QStringLiteral("Microphone"), microphone}};
}

} // namespace talvera
