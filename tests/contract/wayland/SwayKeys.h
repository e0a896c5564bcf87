// SPDX-License-Identifier: MIT
#pragma once

#include "FakeKeyboardLayout.h"
#include "Peer.h"
#include "RigInput.h"
#include "keys.h"
#include "linux/wayland/sway/SwayEventTaps.h"
#include "linux/wayland/sway/SwayIpc.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace talvera::test {

/// Whether the program comes to say this line.
bool says(Peer& program, const QString& line);

/// An owner of a tap that swallows what it waits for and writes down what it is told.
struct SwayTapOwner {
    explicit SwayTapOwner(EventTapFactory& taps);

    /// "+49" for a key down by its number, "-49" for its end.
    QStringList told;
    std::uint64_t lastFlags = 0;
    std::unique_ptr<EventTap> tap; ///< enabled
};

/// A sway session with a keyboard, a program's window that has the focus, and taps. Throws std::runtime_error
/// when sway doesn't do what it is told.
class SwayKeys {
public:
    static constexpr std::chrono::seconds patience{60};

    SwayKeys();
    ~SwayKeys();
    SwayKeys(const SwayKeys&) = delete;
    SwayKeys& operator=(const SwayKeys&) = delete;

    static QString socket() { return qEnvironmentVariable("SWAYSOCK"); }

    SwayEventTaps& taps() { return *m_taps; }

    void press(const std::vector<XKeycode>& pressed);
    void release(const std::vector<XKeycode>& released);
    /// Pressed one after the other, and let go in the opposite order.
    void tap(const std::vector<XKeycode>& tapped);

    /// Runs the main thread until `condition` holds; false when it doesn't in time.
    static bool becomes(const std::function<bool()>& condition);

    /// Which keys have reached the window since the last call: "+65", "-65", by their X keycodes.
    QStringList takeKeys();

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
    RigInput m_keys;
    std::vector<XKeycode> m_held;
    Peer m_window;
};

} // namespace talvera::test
