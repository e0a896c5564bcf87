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
    const bool asJson = *verb == Verb::Status && words.value(1) == jsonOption;
    if (words.size() > (asJson ? 2 : 1))
        return std::nullopt;
    return AgentCommand{*verb, asJson};
}

QStringList AgentCommand::words() const {
    QStringList words{rawValue(verb)};
    if (asJson)
        words << jsonOption;
    return words;
}

} // namespace talvera
