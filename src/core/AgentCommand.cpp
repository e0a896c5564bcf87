// SPDX-License-Identifier: MIT
#include "core/AgentCommand.h"

namespace talvera {

namespace {

const auto jsonOption = QStringLiteral("--json");

} // namespace

std::optional<AgentCommand> AgentCommand::of(const QStringList& words) {
    const auto verb = fromRawValue<Verb>(words.value(0));
    if (!verb)
        return std::nullopt;
    AgentCommand command{*verb};
    if (words.size() == 1)
        return command;
    command.asJson = *verb == Verb::Status && words[1] == jsonOption;
    if (*verb == Verb::Settings)
        command.section = fromRawValue<SettingsSectionID>(words[1]);
    const bool isUnderstood = command.asJson || command.section;
    return isUnderstood && words.size() == 2 ? std::optional(command) : std::nullopt;
}

QStringList AgentCommand::words() const {
    QStringList words{rawValue(verb)};
    if (asJson)
        words << jsonOption;
    if (section)
        words << rawValue(*section);
    return words;
}

} // namespace talvera
