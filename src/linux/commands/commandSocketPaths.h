// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

class QProcessEnvironment;

namespace talvera {

/// Where the agent of a session listens, and where the session's programs find it: in `directory`, which is
/// private to the user, by the name of each display server that the session has. A program may know only one
/// of these, and the sessions of one user have no name in common.
QStringList commandSocketPaths(const QString& directory, const QProcessEnvironment& environment);

} // namespace talvera
