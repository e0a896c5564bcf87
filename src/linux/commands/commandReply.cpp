// SPDX-License-Identifier: MIT
#include "linux/commands/commandReply.h"

#include <utility>

namespace talvera {

namespace {

const QByteArray done = "done\n";
const QByteArray refused = "refused\n";

} // namespace

QByteArray encoded(const CommandReply& reply) {
    return (reply.isDone ? done : refused) + reply.text.toUtf8();
}

std::optional<CommandReply> decodedReply(const QByteArray& bytes) {
    for (const auto& [head, isDone] : {std::pair(done, true), std::pair(refused, false)}) {
        if (bytes.startsWith(head))
            return CommandReply{isDone, QString::fromUtf8(bytes.sliced(head.size()))};
    }
    return std::nullopt;
}

} // namespace talvera
