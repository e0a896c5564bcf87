// SPDX-License-Identifier: MIT
#pragma once

#include "linux/keyboard/EvdevKeys.h"
#include "linux/support/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <set>

#include <sys/types.h>

class QSocketNotifier;

namespace talvera {

/// The helper that tells of keys held alone, while it runs for us. Main thread, with an event loop.
class LoneKeyProgram {
public:
    struct News {
        enum class Kind {
            Down,
            Up,
            Other, ///< another key has gone down while one of ours is held
            Ended, ///< the helper is gone, and tells nothing any more
        };
        Kind kind = Kind::Ended;
        EvdevCode code{}; ///< of Down and Up
    };
    using Receiver = std::function<void(const News&)>;

    /// The helper is there, and is such that it may read the keyboards.
    static bool isInstalled(const QString& path);
    /// It can tell of this key.
    static bool canTell(EvdevCode code);

    /// Null when it can't be started. `receiver` isn't called before the event loop runs again.
    static std::unique_ptr<LoneKeyProgram> start(const QString& path, const std::set<EvdevCode>& keys,
                                                 Receiver receiver);
    LoneKeyProgram(const LoneKeyProgram&) = delete;
    LoneKeyProgram& operator=(const LoneKeyProgram&) = delete;
    ~LoneKeyProgram();

    bool hasEnded() const { return m_hasEnded; }

private:
    LoneKeyProgram(pid_t process, FileDescriptor input, FileDescriptor output, Receiver receiver);
    void read();
    void take(const QByteArray& line);

    const pid_t m_process;
    FileDescriptor m_input; ///< the helper ends with it
    const FileDescriptor m_output;
    const std::unique_ptr<QSocketNotifier> m_notifier;
    const Receiver m_receiver;
    const std::shared_ptr<int> m_alive = std::make_shared<int>();
    QByteArray m_unread;
    bool m_hasEnded = false;
};

} // namespace talvera
