// SPDX-License-Identifier: MIT
#pragma once

#include "FakeKeyboardLayout.h"
#include "KeysInWindow.h"
#include "linux/wayland/sway/SwayEventTaps.h"
#include "linux/wayland/sway/SwayIpc.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace talvera::test {

/// A sway session with a keyboard, a program's window that has the focus, and taps. Throws std::runtime_error
/// when sway doesn't do what it is told.
class SwayKeys : public KeysInWindow {
public:
    SwayKeys();
    ~SwayKeys();
    SwayKeys(const SwayKeys&) = delete;
    SwayKeys& operator=(const SwayKeys&) = delete;

    static QString socket() { return qEnvironmentVariable("SWAYSOCK"); }

    SwayEventTaps& taps() { return *m_taps; }

    /// What stands in sway's configuration below what is there always; sway has read it when this returns.
    void configure(const QByteArray& lines);

    /// The commands of bindings that sway has carried out.
    const QStringList& commands() const { return m_commands; }

    /// The modes that sway has been put into.
    const QStringList& modes() const { return m_modes; }

    FakeKeyboardLayout layout;

private:
    void reload();

    QString m_configFile;
    QByteArray m_config;
    QStringList m_commands;
    QStringList m_modes;
    int m_reloads = 0;
    std::unique_ptr<SwayEvents> m_events;
    std::optional<SwayEventTaps> m_taps;
};

} // namespace talvera::test
