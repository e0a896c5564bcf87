// SPDX-License-Identifier: MIT
#pragma once

#include "PanelTest.h"
#include "WaylandTools.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace talvera::test {

/// A test in a Wayland session, where the hotkey is Ctrl+Alt+Space as long as no other is set.
class OnWayland : public PanelTest {
protected:
    OnWayland();

    static inline const QString sentence = QStringLiteral("Please send the report tomorrow.");
    /// Takes seconds to type: what comes in between does so however late it is on a busy machine.
    static inline const QString longText =
        sentence + QStringLiteral(" The meeting starts at nine on Monday. Peter is at home this evening. "
                                  "Thank you for the long letter.");
    const QJsonObject pasting{{"insertionMode", "paste"}};

    void dictateInto(Receiver& receiver) { dictateInto(receiver, sentence, spoken(sentence)); }
    /// Expects `text` behind what the receiver holds, and waits until the agent is at rest.
    void dictateInto(Receiver& receiver, const QString& text, const Samples& speech);

    /// Whether the receiver comes to hold just this, after a recognition that has begun.
    static testing::AssertionResult isWritten(Receiver& receiver, const QString& text);

    /// Starts a program that isn't the one the compositor knows.
    void startAgentOf(const QString& program, const QJsonObject& preferences = {});

    /// Nothing is left at the compositor of an agent that has gone.
    void expectKeysAreTheUsersAgain();

    /// Runs the program with these arguments to its end, and answers what it prints.
    QByteArray told(const QStringList& arguments) const;
    QJsonObject status() const;
};

/// What a program prints. Throws std::runtime_error when it fails.
QByteArray outputOfProgram(const QString& program, const QStringList& arguments);

/// The compositor of the session, as the user and a curious program see it. Each has its own.
namespace compositor {

/// Where the agent that will live there can't watch keys, the user binds the hotkey to its commands.
void bindHotkey(AgentHome& home);

/// The user turns to the window of this process.
void turnTo(pid_t process);

/// Does what the package does for the installed program, where the compositor wants it.
void letPressKeys(const QString& program);

/// It keeps keys from programs that belong to an agent which has gone.
bool keepsKeysOfTheDead();

} // namespace compositor

} // namespace talvera::test
