// SPDX-License-Identifier: MIT
#include "receivers/Receiver.h"

#include "linux/x11/server/X11Server.h"
#include "receivers/processGroup.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace talvera::test {

namespace {

using Clock = std::chrono::steady_clock;

std::filesystem::path makeDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "receiver.XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        throw std::runtime_error("no temporary directory");
    }
    return pattern;
}

std::string titleOf(X11Connection& connection, xcb_window_t window) {
    for (const char* name : {"_NET_WM_NAME", "WM_NAME"}) {
        const auto answer = connection.reply<xcb_get_property_reply_t>(xcb_get_property(
            connection.get(), 0, window, connection.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 256));
        if (answer && answer->format == 8) {
            return {static_cast<const char*>(xcb_get_property_value(answer.get())),
                    static_cast<std::size_t>(xcb_get_property_value_length(answer.get()))};
        }
    }
    return {};
}

std::optional<QString> titleOfFocused(const QJsonObject& node) {
    if (node["focused"].toBool())
        return node["name"].toString();
    for (const char* kind : {"nodes", "floating_nodes"}) {
        for (const auto& child : node[kind].toArray()) {
            if (const auto title = titleOfFocused(child.toObject()))
                return title;
        }
    }
    return std::nullopt;
}

/// The same in a sway session, which is asked by the program that users have for it.
bool waitUntilActiveOnSway(const std::string& title, Clock::time_point deadline) {
    do {
        QProcess asked;
        asked.start(QStringLiteral("swaymsg"), {QStringLiteral("-rt"), QStringLiteral("get_tree")});
        asked.waitForFinished();
        const auto tree = QJsonDocument::fromJson(asked.readAllStandardOutput()).object();
        if (titleOfFocused(tree) == QString::fromStdString(title)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    } while (Clock::now() < deadline);
    return false;
}

/// The same in a GNOME session, whose Shell lets tests look into it.
bool waitUntilActiveOnGnome(const QString& title, Clock::time_point deadline) {
    do {
        QProcess asked;
        asked.start(QStringLiteral("gdbus"),
                    {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                     QStringLiteral("org.gnome.Shell"), QStringLiteral("--object-path"),
                     QStringLiteral("/org/gnome/Shell"), QStringLiteral("--method"),
                     QStringLiteral("org.gnome.Shell.Eval"),
                     QStringLiteral("global.display.focus_window?.get_title() ?? ''")});
        asked.waitForFinished();
        const auto told = QString::fromUtf8(asked.readAllStandardOutput()).remove(u'\\'); // of quotes within
        if (told.contains(u'"' + title + u'"')) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    } while (Clock::now() < deadline);
    return false;
}

/// Waits until the window with this title is the active one.
bool waitUntilActiveOnX11(const std::string& title, Clock::time_point deadline) {
    const auto connection = X11Server().connect();
    if (connection->isBroken()) {
        throw std::runtime_error("no X server");
    }
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection->get(), connection->root(), XCB_CW_EVENT_MASK, &mask);
    do {
        const auto active = connection->property(connection->root(), connection->atom("_NET_ACTIVE_WINDOW"));
        if (active.empty() || active.front() == XCB_NONE) {
            continue;
        }
        xcb_change_window_attributes(connection->get(), active.front(), XCB_CW_EVENT_MASK, &mask);
        if (titleOf(*connection, active.front()) == title) {
            return true;
        }
    } while (connection->waitForEvent(deadline));
    return false;
}

bool isOnKwin() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP") == QStringLiteral("KDE");
}

/// These say themselves that keys go to them, and KWin tells programs nothing of its windows.
bool isOfWaylandOnKwin(Receiver::Kind kind) {
    return isOnKwin() && kind != Receiver::Kind::Terminal && !qEnvironmentVariableIsSet("GDK_BACKEND");
}

} // namespace

Receiver::Receiver(Kind kind, const QString& title)
    : m_directory(makeDirectory()) {
    const std::string pipePath = m_directory / "pipe";
    const bool made = ::mkfifo(pipePath.c_str(), 0600) == 0 && ::pipe2(m_stop, O_CLOEXEC) == 0;
    // Also open for writing, so that the application's end may come and go.
    const int pipe = made ? ::open(pipePath.c_str(), O_RDWR | O_CLOEXEC) : -1;
    if (pipe < 0) {
        throw std::runtime_error("no pipe for the receiver");
    }
    m_listener = std::thread([this, pipe] { listen(pipe); });
    try {
        launch(kind, title);
        awaitFocus(kind, title);
    } catch (...) {
        shutDown();
        throw;
    }
}

void Receiver::awaitFocus(Kind kind, const QString& title) {
    const auto deadline = Clock::now() + patience;
    const bool isOnSway = qEnvironmentVariableIsSet("SWAYSOCK");
    const bool isOnGnome = qEnvironmentVariable("XDG_CURRENT_DESKTOP") == QStringLiteral("GNOME");
    const bool active = isOnSway ? waitUntilActiveOnSway(title.toStdString(), deadline)
                        : isOnGnome
                            ? waitUntilActiveOnGnome(title, deadline)
                            : isOfWaylandOnKwin(kind) || waitUntilActiveOnX11(title.toStdString(), deadline);
    std::unique_lock lock(m_mutex);
    if (!active || !m_changed.wait_until(lock, deadline, [this] { return m_ready; })) {
        throw std::runtime_error(active ? "the receiver's field has not taken the focus"
                                        : "the receiver's window has not become the active one");
    }
}

void Receiver::launch(Kind kind, const QString& title) {
    if (kind == Kind::WaylandTerminal && isOnKwin())
        kind = Kind::VteTerminal; // foot dies of the screen without a size in millimetres that KWin 5.27 has
                                  // here
    const std::string directory = TALVERA_RECEIVERS;
    const std::string pipe = m_directory / "pipe";
    const std::string profile = m_directory / "profile";
    std::vector<std::string> command;
    switch (kind) {
    case Kind::Gtk:
        command = {directory + "/gtk-editor.py", pipe, title.toStdString()};
        break;
    case Kind::Gtk4:
        command = {directory + "/gtk4-editor.py", pipe, title.toStdString()};
        break;
    case Kind::Qt:
        command = {TALVERA_QT_EDITOR, pipe, title.toStdString()};
        break;
    case Kind::Terminal:
        command = {"xterm", "-u8", "-T", title.toStdString(), "-e", directory + "/terminal-reader.py", pipe};
        break;
    case Kind::WaylandTerminal:
        command = {"foot", "-T", title.toStdString(), directory + "/terminal-reader.py", pipe};
        break;
    case Kind::VteTerminal:
        command = {directory + "/vte-terminal.py", pipe, title.toStdString()};
        break;
    case Kind::Chromium:
        command = {directory + "/chromium-editor.py", pipe, title.toStdString(), profile};
        break;
    }
    m_process = startProcessGroup(std::move(command));
}

Receiver::~Receiver() {
    shutDown();
}

void Receiver::shutDown() {
    if (m_process > 0) {
        signal(SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    if (m_listener.joinable()) {
        ::close(m_stop[1]);
        m_listener.join();
        ::close(m_stop[0]);
    }
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

void Receiver::signal(int number) const {
    ::kill(-m_process, number);
}

QString Receiver::text() const {
    const std::scoped_lock lock(m_mutex);
    return m_text;
}

bool Receiver::waitForText(const QString& expected, std::chrono::milliseconds limit) {
    return waitFor([&](const QString& text) { return text == expected; }, limit);
}

bool Receiver::waitFor(const std::function<bool(const QString&)>& condition,
                       std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, limit, [&] { return condition(m_text); });
}

bool Receiver::waitForKeysDown(bool areDown, std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, limit, [&] { return (m_keysDown > 0) == areDown; });
}

void Receiver::listen(int pipe) {
    QByteArray pending;
    std::vector<char> buffer(1 << 16);
    for (;;) {
        pollfd sources[] = {{pipe, POLLIN, 0}, {m_stop[0], POLLIN, 0}};
        ::poll(sources, 2, -1);
        if (sources[1].revents != 0) {
            break;
        }
        const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
        if (count <= 0) {
            continue;
        }
        pending.append(buffer.data(), count);
        for (qsizetype end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            take(pending.left(end));
            pending.remove(0, end + 1);
        }
    }
    ::close(pipe);
}

void Receiver::take(const QByteArray& line) {
    const QJsonObject report = QJsonDocument::fromJson(line).object();
    const std::scoped_lock lock(m_mutex);
    m_ready = m_ready || report["ready"].toBool();
    if (report.contains("text")) {
        m_text = report["text"].toString();
    }
    m_keysDown = report["keys"].toInt(m_keysDown);
    m_text += report["added"].toString();
    m_changed.notify_all();
}

} // namespace talvera::test
