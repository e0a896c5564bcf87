// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

namespace talvera {

CommandLine::Purpose CommandLine::purposeOf(const QStringList& arguments) {
    static const QStringList help{QStringLiteral("--help"), QStringLiteral("-h"), QStringLiteral("help")};
    const auto first = arguments.value(0);
    if (help.contains(first))
        return Help();
    if (first == QStringLiteral("--version") || first == QStringLiteral("-v"))
        return Version();
    if (arguments.isEmpty() || first.startsWith(u'-'))
        return Run();
    if (const auto command = AgentCommand::of(arguments))
        return Command{*command};
    return Misuse{arguments.join(u' ')};
}

} // namespace talvera
