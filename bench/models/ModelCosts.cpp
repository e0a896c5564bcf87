// SPDX-License-Identifier: MIT
// A model as large as the real one: its digest beside the system's sha256sum, and whether the main thread is
// on time for each frame while it is fetched, verified and put in place; and how long its end then takes.
#include "FileServer.h"
#include "contract/network/ModelHome.h"
#include "models/sha256.h"
#include "support/Figure.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <thread>

using namespace talvera;
using namespace talvera::bench;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

constexpr qint64 modelSize = 539'212'467;
constexpr int rounds = 5;

void writeModel(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("no room for a model");
    const auto block = FileServer::pattern(1 << 20);
    for (qint64 left = modelSize; left > 0; left -= block.size()) {
        if (file.write(block.constData(), std::min<qint64>(left, block.size())) < 0)
            throw std::runtime_error("no room for a model");
    }
}

/// The digest, and how long the command takes for it.
std::pair<QString, Clock::duration> byCommand(const QString& path) {
    QProcess command;
    const auto begin = Clock::now();
    command.start("sha256sum", {path});
    if (!command.waitForFinished(-1) || command.exitCode() != 0)
        throw std::runtime_error("sha256sum fails");
    return {QString::fromLatin1(command.readAllStandardOutput()).section(' ', 0, 0), Clock::now() - begin};
}

/// How late the main thread is for frames, 60 a second.
class FrameWatch {
public:
    FrameWatch() {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            const auto now = Clock::now();
            if (m_last)
                m_worst = std::max(m_worst, now - *m_last - m_timer.intervalAsDuration());
            m_last = now;
        });
        m_timer.start(16ms);
    }
    /// The worst since the last call, in milliseconds.
    double latest() { return milliseconds(std::exchange(m_worst, {})); }

private:
    QTimer m_timer;
    std::optional<Clock::time_point> m_last;
    Clock::duration m_worst{};
};

void untilPhase(ModelHome& home, const std::function<bool(const ModelDownloader::Phase&)>& reached) {
    while (!reached(home.downloader.phase.get()))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void measureDigest(const QString& path, const QString& digest) {
    Figure ratio("SHA-256 of the model: pace beside sha256sum", "x");
    PosixFileSystem files;
    for (int i = 0; i < rounds; ++i) {
        const auto theirs = byCommand(path).second;
        const auto begin = Clock::now();
        if (sha256Hex(files, path, [] { return false; }) != digest)
            throw std::runtime_error("the digests differ");
        ratio.add(milliseconds(theirs) / milliseconds(Clock::now() - begin));
    }
    ratio.print(Aim::atLeast(0.9));
}

void measureFrames(const QString& path, const QString& digest) {
    using Phase = ModelDownloader::Phase;
    const QTemporaryDir data;
    FileServer server({{"model", path}});
    ModelHome home(data.path(), {{server.url("model"), digest, modelSize}, {}}, {{}, server.authority()});
    FrameWatch frames;
    QTimer::singleShot(2s, [] {});
    const auto idle = Clock::now() + 2s;
    while (Clock::now() < idle)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double atRest = frames.latest();
    printFigure("the latest frame while nothing happens", atRest, "ms");
    const auto print = [&](const std::string& when) {
        const double latest = frames.latest();
        printFigure("the latest frame while " + when, latest, "ms");
        printFigure("  beyond that at rest", latest - atRest, "ms", Aim::atMost(16));
    };

    const auto begin = Clock::now();
    home.downloader.start();
    untilPhase(home, [](const Phase& phase) { return phase != Phase::Downloading; });
    const auto fetched = Clock::now();
    print("the model comes");
    untilPhase(home, [](const Phase& phase) { return !phase.isBusy(); });
    print("it is verified");
    if (home.downloader.phase.get() != Phase::Done)
        throw std::runtime_error(home.downloader.phase.get().message().toStdString());
    constexpr double mebibyte = 1 << 20;
    printFigure("pace of the download, TLS and server on the same processors",
                modelSize / mebibyte / milliseconds(fetched - begin) * 1000, "MiB/s");
    printFigure("verified, flushed to the disk and in place after", milliseconds(Clock::now() - fetched),
                "ms");
}

/// What a user waits who ends the program in the middle of the digest.
void measureEnd(const QString& path, const QString& digest) {
    using Phase = ModelDownloader::Phase;
    const QTemporaryDir data;
    FileServer server({{"model", path}});
    ModelHome home(data.path(), {{server.url("model"), digest, modelSize}, {}}, {{}, server.authority()});
    home.downloader.start();
    untilPhase(home, [](const Phase& phase) { return phase == Phase::Verifying; });
    std::this_thread::sleep_for(100ms); // it is well under way
    const auto begin = Clock::now();
    home.background.finish();
    printFigure("the end of the program while it is verified", milliseconds(Clock::now() - begin), "ms",
                Aim::below(100));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QTemporaryDir directory;
    const auto path = directory.filePath("model");
    writeModel(path);
    const auto digest = byCommand(path).first; // which also leaves the file in the memory
    measureDigest(path, digest);
    measureFrames(path, digest);
    measureEnd(path, digest);
    return 0;
}
