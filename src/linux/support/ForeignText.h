// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace talvera {

/// What another program says of itself, fit to be shown and compared: valid Unicode on one line, without
/// control and direction characters, at most `foreignTextLimit` characters. Empty when nothing is left.
QString foreignText(const QByteArray& utf8);

inline constexpr qsizetype foreignTextLimit = 100;

} // namespace talvera
