// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace talvera {

/// What the program prints when it is started only to be asked something, such as `--help`; it then ends.
/// Nothing for every other start. `arguments` are those after the program's name.
std::optional<QString> commandLineAnswer(const QStringList& arguments);

} // namespace talvera
