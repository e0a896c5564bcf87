// SPDX-License-Identifier: MIT
#include "SoundServer.h"

#include "spawnProgram.h"

#include <QFile>

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace talvera::test {

using namespace std::chrono_literals;

namespace {

std::vector<std::string> wordsOf(const QStringList& command) {
    std::vector<std::string> words;
    for (const auto& word : command)
        words.push_back(word.toStdString());
    return words;
}

bool accepts(const QString& socketPath) {
    const auto path = QFile::encodeName(socketPath);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        throw std::runtime_error("the path of the sound server's socket is too long");
    std::copy(path.begin(), path.end(), address.sun_path);
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool open = connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    return open;
}

/// For what announces nothing.
void await(const char* what, const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + 15s;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error(std::string("in vain waited for ") + what);
        std::this_thread::sleep_for(5ms);
    }
}

} // namespace

SoundServer::SoundServer(Kind kind)
    : m_kind(kind)
    , m_directory(QStringLiteral("/tmp/talvera-sound-XXXXXX")) {}

SoundServer::~SoundServer() {
    kill();
}

std::string SoundServer::address() const {
    return "unix:" + path("pulse/native").toStdString();
}

void SoundServer::start() {
    mkdir(QFile::encodeName(path("pulse")).constData(), 0700);
    if (m_kind == Kind::PulseAudio)
        startPulseAudio();
    else
        startPipeWire();
    m_modules.clear();
}

void SoundServer::kill() {
    for (const auto process : m_processes)
        ::kill(process, SIGKILL);
    for (const auto process : m_processes)
        waitpid(process, nullptr, 0);
    m_processes.clear();
    for (const char* const name : {"pulse/native", "pipewire-0", "bus"})
        QFile::remove(path(name));
}

void SoundServer::freeze() {
    for (const auto process : m_processes)
        ::kill(process, SIGSTOP);
}

void SoundServer::thaw() {
    for (const auto process : m_processes)
        ::kill(process, SIGCONT);
}

void SoundServer::serve(const QStringList& command) {
    // As on a desktop, sound goes before all else, so that a busy machine doesn't make it stammer. PipeWire
    // does without: in real time it once kept a machine of two cores to itself for half a minute.
    const auto urgency = m_kind == Kind::PulseAudio ? Urgency::RealTime : Urgency::Nice;
    const int log =
        open(QFile::encodeName(path("log")).constData(), O_CREAT | O_APPEND | O_WRONLY | O_CLOEXEC, 0600);
    m_processes.push_back(spawnProgram(wordsOf(command), environment(), urgency, -1, log, log));
    close(log);
}

void SoundServer::startPulseAudio() {
    serve({QStringLiteral("pulseaudio"), QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
           QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--use-pid-file=no"),
           QStringLiteral("--load=module-null-sink sink_name=speaker rate=48000 channels=2 norewinds=1"),
           QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") +
               path("pulse/native")});
    await("PulseAudio", [this] { return accepts(path("pulse/native")); });
}

void SoundServer::startPipeWire() {
    serve({QStringLiteral("dbus-daemon"), QStringLiteral("--session"), QStringLiteral("--nofork"),
           QStringLiteral("--nosyslog"), QStringLiteral("--address=unix:path=") + path("bus")});
    await("the session bus", [this] { return accepts(path("bus")); });
    serve({QStringLiteral("pipewire")});
    await("PipeWire", [this] { return accepts(path("pipewire-0")); });
    serve({QStringLiteral("wireplumber")});
    serve({QStringLiteral("pipewire-pulse")});
    await("PipeWire's PulseAudio server", [this] { return accepts(path("pulse/native")); });
    control({QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
             QStringLiteral("sink_name=speaker")});
}

std::string SoundServer::feedOf(const QString& microphone) const {
    const auto suffix = m_kind == Kind::PulseAudio ? QStringLiteral("_feed") : QString();
    return (microphone + suffix).toStdString();
}

void SoundServer::addMicrophone(const QString& name, int rate, int channels) {
    const auto map = channels == 1 ? QStringLiteral("mono") : QStringLiteral("front-left,front-right");
    const QStringList sink{QStringLiteral("module-null-sink"),
                           QStringLiteral("sink_name=") + QString::fromStdString(feedOf(name)),
                           QStringLiteral("rate=%1").arg(rate), QStringLiteral("channels=%1").arg(channels),
                           QStringLiteral("channel_map=") + map};
    if (m_kind == Kind::PulseAudio) {
        // Without norewinds a null sink works in blocks of two seconds, which no microphone does.
        plugIn(name, {sink + QStringList{QStringLiteral("norewinds=1")},
                      {QStringLiteral("module-remap-source"), QStringLiteral("source_name=") + name,
                       QStringLiteral("master=%1.monitor").arg(QString::fromStdString(feedOf(name)))}});
    } else {
        // Sink and source in one: between two of them PipeWire drops a block when a recording begins.
        plugIn(name, {sink + QStringList{QStringLiteral("media.class=Audio/Duplex")}});
    }
}

void SoundServer::addDeafMicrophone(const QString& name) {
    if (m_kind == Kind::PulseAudio) {
        addMicrophone(name);
    } else {
        plugIn(name, {{QStringLiteral("module-null-sink"), QStringLiteral("sink_name=") + name,
                       QStringLiteral("media.class=Audio/Source/Virtual"), QStringLiteral("channels=1"),
                       QStringLiteral("channel_map=mono")}});
    }
}

void SoundServer::plugIn(const QString& name, const std::vector<QStringList>& modules) {
    QStringList loaded;
    for (const auto& module : modules)
        loaded << control(QStringList{QStringLiteral("load-module")} + module);
    m_modules.emplace_back(name, loaded);
    await("the microphone", [&] {
        return control({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sources")})
            .contains(QLatin1Char('\t') + name + QLatin1Char('\t'));
    });
    makeDefaultSource(name);
}

void SoundServer::makeDefaultSource(const QString& name) {
    await("the default source", [&] { return tryMakeDefaultSource(name); });
}

bool SoundServer::tryMakeDefaultSource(const QString& name) {
    try {
        control({QStringLiteral("set-default-source"), name});
        return control({QStringLiteral("get-default-source")}) == name;
    } catch (const std::runtime_error&) {
        return false; // PipeWire's session manager is not there yet
    }
}

void SoundServer::removeMicrophone(const QString& name) {
    for (const auto& [microphone, modules] : m_modules) {
        if (microphone != name)
            continue;
        for (auto module = modules.rbegin(); module != modules.rend(); ++module)
            control({QStringLiteral("unload-module"), *module});
    }
    std::erase_if(m_modules, [&](const auto& entry) { return entry.first == name; });
}

QString SoundServer::control(const QStringList& arguments) {
    QString output;
    if (!run(QStringList{QStringLiteral("pactl"), QStringLiteral("-s"), QString::fromStdString(address())} +
                 arguments,
             output))
        throw std::runtime_error("pactl " + arguments.join(QLatin1Char(' ')).toStdString() + ": " +
                                 output.toStdString());
    return output;
}

bool SoundServer::run(const QStringList& command, QString& output) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const auto process = spawnProgram(wordsOf(command), environment(), Urgency::Nice, -1, pipe[1], pipe[1]);
    close(pipe[1]);
    QByteArray bytes;
    std::array<char, 4096> piece{};
    for (ssize_t got = 0; (got = read(pipe[0], piece.data(), piece.size())) > 0;)
        bytes.append(piece.data(), got);
    close(pipe[0]);
    int status = 0;
    waitpid(process, &status, 0);
    output = QString::fromUtf8(bytes).trimmed();
    return status == 0;
}

std::vector<std::string> SoundServer::environment() const {
    const auto home = path("").toStdString();
    return {"HOME=" + home, "XDG_RUNTIME_DIR=" + home, "LC_ALL=C",
            "DBUS_SESSION_BUS_ADDRESS=unix:path=" + path("bus").toStdString()};
}

} // namespace talvera::test
