// SPDX-License-Identifier: MIT
#pragma once

#include "linux/commands/CommandSocket.h"

#include <QByteArray>

#include <optional>

namespace talvera {

// A request is one line of words. A reply is a line that says whether it was done, and the text up to the
// end.

QByteArray encoded(const CommandReply& reply);

/// Nothing when that is no reply, or only the beginning of one.
std::optional<CommandReply> decodedReply(const QByteArray& bytes);

} // namespace talvera
