// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SettingsPanels.h"
#include "platform/system/Console.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace talvera {

/// Opens the settings of the desktop that runs, where they are installed; else a mixer or whatever else is
/// there and helps. Where nothing is, says where to look.
class DesktopSettingsPanels final : public SettingsPanels {
public:
    struct Session {
        QStringList desktops; ///< names of the desktop that runs, as in $XDG_CURRENT_DESKTOP
        QStringList path;     ///< directories that programs are looked for in
    };

    DesktopSettingsPanels(Session session, Console& console)
        : m_session(std::move(session))
        , m_console(console) {}

    /// The session of this process.
    static Session session();

    bool open(Panel panel) override;

    /// The command lines that may open the panel on such desktops, best first.
    static std::vector<QStringList> candidates(Panel panel, const QStringList& desktops);

private:
    bool start(const QStringList& command) const;

    Session m_session;
    Console& m_console;
};

} // namespace talvera
