// SPDX-License-Identifier: MIT
#pragma once

#include <QProcessEnvironment>
#include <QStringList>

namespace talvera {

/// The languages that the user reads, best first, as "de-AT". They are found as every program of the desktop
/// finds its messages: the locale is LC_ALL, else LC_MESSAGES, else LANG; the list in LANGUAGE goes before
/// it, unless the locale is "C". Empty when the session names none.
QStringList sessionLanguages(const QProcessEnvironment& environment);

} // namespace talvera
