// SPDX-License-Identifier: MIT
#pragma once

#include "FileServer.h"
#include "PanelTest.h"

#include <QTemporaryDir>

#include <optional>

namespace talvera::test {

/// A test in which the user starts the program for the first time: nothing is stored, and the model lies on a
/// server of the test's own.
class WizardTest : public PanelTest {
protected:
    WizardTest();

    /// Offers the model under that path of the server, for agents that are started from then on.
    void offer(const QString& path);
    /// Starts the agent, whose wizard comes up.
    void startWizard();
    /// Ends the agent, as a session does.
    void endAgent();

    /// Where the wizard's window is, in pixels; nothing while it isn't on the screen.
    static std::optional<QRect> wizard();
    static bool wizardComes();
    static bool wizardGoes();
    /// Closes it as every window of the desktop is closed.
    void closeWizard();

    /// Clicks on the button once it can be used.
    void clickButton(const QString& name);
    /// Waits until the button can be used.
    void awaitButton(const QString& name) const;
    void awaitStep(int step) { agent->await("wizard step " + QString::number(step)); }
    /// Goes on from the first step to this one by the keyboard.
    void goToStep(int last);
    /// What lies in this directory of the program's data.
    QStringList filesIn(const char* directory) const;

    /// The user dictates into an editor, which they can from now on.
    void dictateIntoAnEditor();

    QTemporaryDir data;
    FileServer server;
};

} // namespace talvera::test
