// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/LoginItem.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace talvera {

/// An entry in the desktop's autostart directory. The file itself is the truth, whichever program wrote it:
/// we, the desktop's own settings, or the user with an editor.
class XdgLoginItem final : public LoginItem {
public:
    /// What the session goes by.
    struct Session {
        QString program;        ///< the path of ours
        QString configHome;     ///< where the user's own entries lie, in "autostart"
        QStringList configDirs; ///< the system's, best first
        QStringList desktops;   ///< names of the desktop that runs, as in $XDG_CURRENT_DESKTOP
        QStringList path;       ///< directories that programs are looked for in
    };

    explicit XdgLoginItem(Session session)
        : m_session(std::move(session)) {}

    /// The session of this process.
    static Session session();

    bool isRegistered() override;
    void registerProgram() override;
    void unregisterProgram() override;

    /// Whether a session with these desktops would start a program by an entry with this content.
    static bool starts(const QByteArray& content, const Session& session);

private:
    QString userEntry() const;
    QString systemEntry() const;

    Session m_session;
};

} // namespace talvera
