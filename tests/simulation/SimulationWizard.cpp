// SPDX-License-Identifier: MIT
#include "Simulation.h"

// The user in the wizard, and what comes of the model meanwhile.

namespace talvera::simulation {

/// The wizard opens for a user who is new, and for one without a model. It keeps its step from round to
/// round, so that a life comes through it.
void Simulation::scheduleWizard() {
    if (!m_dice.chance(m_isNew ? 0.3 : 0.06))
        return;
    now(download());
    if (!m_isNew || m_dice.chance(0.3))
        now("the model is missing");
    now("the program is started again");
    for (auto count = m_dice.pick({1, 3, 6, 10}); count > 0; --count)
        after(m_dice.between(0, 10), wizardStep());
    if (m_dice.chance(0.1)) {
        const double gone = m_dice.between(0, 4);
        after(gone, "there is no network");
        after(gone + m_dice.between(0, 6), "there is a network");
    }
    if (m_dice.chance(0.05))
        after(m_dice.between(0, 6), "the program is killed and started again");
}

QString Simulation::download() {
    const double takes = m_dice.pick({0.0, 0.3, 1.0, 3.0, 6.0}) + m_dice.between(0, 0.1);
    const auto* how = m_dice.pick({"the model comes within %1 s", "the model comes within %1 s",
                                   "the model comes within %1 s", "the download breaks off after %1 s",
                                   "half of the model comes within %1 s, as if it were all"});
    return QString::fromLatin1(how).arg(takes, 0, 'f', 6);
}

QString Simulation::wizardStep() {
    switch (m_dice.below(14)) {
    case 0:
        return QStringLiteral("the user goes back in the wizard");
    case 1:
        return QStringLiteral("the user closes the wizard");
    case 2:
        return QStringLiteral("the user begins to record a chord");
    case 3:
        return QStringLiteral("the user gives the chord up");
    case 4:
    case 5:
        return QStringLiteral("the user wants the model again");
    case 6:
        return QStringLiteral("the user skips the permissions");
    case 7:
        return download();
    default:
        return QStringLiteral("the user goes on in the wizard");
    }
}

} // namespace talvera::simulation
