// SPDX-License-Identifier: MIT
#pragma once

#include "OnWayland.h"

#include <QByteArray>
#include <QStringList>

namespace talvera::test {

/// A test in a sway session.
class OnSway : public OnWayland {};

/// The commands that take away the bindings which keep Talvera's hotkey from programs, as sway's user could
/// give them.
QStringList unbindings();
/// Whether sway does this.
bool isDone(const QString& command);

/// Lines of the user's in sway's configuration. Sway has read them when this is made, and again without them
/// when it goes.
class UsersConfiguration {
public:
    explicit UsersConfiguration(const QByteArray& lines);
    ~UsersConfiguration();
    UsersConfiguration(const UsersConfiguration&) = delete;
    UsersConfiguration& operator=(const UsersConfiguration&) = delete;

private:
    void write(const QByteArray& text) const;

    const QByteArray m_before;
};

} // namespace talvera::test
