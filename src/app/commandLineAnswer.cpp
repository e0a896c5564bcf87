// SPDX-License-Identifier: MIT
#include "app/commandLineAnswer.h"

namespace talvera {

namespace {

// Terminals read no catalogs: like all lines that the program prints, these are in English.
const auto help = QStringLiteral(
    "Usage: talvera [OPTION]\n"
    "Push-to-talk dictation: hold the right Ctrl key, speak, let go.\n"
    "\n"
    "  -h, --help     print this text and end\n"
    "  -v, --version  print the version and end\n"
    "\n"
    "Started while it runs already, it opens the panel of the one that runs. See also: man talvera");

} // namespace

std::optional<QString> commandLineAnswer(const QStringList& arguments) {
    if (arguments.contains(QStringLiteral("--help")) || arguments.contains(QStringLiteral("-h")))
        return help;
    if (arguments.contains(QStringLiteral("--version")) || arguments.contains(QStringLiteral("-v")))
        return QStringLiteral("Talvera " TALVERA_VERSION);
    return std::nullopt;
}

} // namespace talvera
