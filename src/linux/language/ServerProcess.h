// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace talvera {

/// A model's server as our own child: it listens on a Unix socket that only we can reach, has no network and
/// dies with us however we end. Main thread only; it works from the event loop.
class ServerProcess {
public:
    enum class State {
        Off,
        Loading, ///< it runs, and hasn't said that it listens
        Ready,
    };

    explicit ServerProcess(MainActor& actor);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    State state() const { return m_state; }

    /// Starts `program` in `directory`, which is private, in the place of one that runs. Throws
    /// PlatformError (domain "ChildProcess", code errno).
    void start(const QString& program, const QStringList& arguments, const QString& directory);

    /// Ends it, if it runs. Nothing is told.
    void end();

    /// It has loaded its model and listens.
    std::function<void()> onReady;
    /// It has ended by itself; `wasLoading`: before it listened.
    std::function<void(bool wasLoading)> onGone;

private:
    class Child;

    void hear(const QByteArray& text);
    void takeEnd();
    void forget(const Child* child);

    MainActor& m_actor;
    State m_state = State::Off;
    std::unique_ptr<Child> m_child;
    std::vector<std::unique_ptr<Child>> m_ending; ///< killed, and not gone yet
    QByteArray m_heard;                           ///< the end of what it has said
    Lifetime m_lifetime;
};

} // namespace talvera
