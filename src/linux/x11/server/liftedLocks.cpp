// SPDX-License-Identifier: MIT
#include "linux/x11/server/liftedLocks.h"

#include "linux/x11/server/X11Connection.h"

namespace talvera {

LiftedLocks liftedLocks(X11Connection& connection) {
    const auto ledger = connection.property(connection.root(), connection.atom(typingLedgerProperty));
    if (ledger.size() < 2)
        return {};
    return {static_cast<std::uint8_t>(ledger[0]), static_cast<std::uint8_t>(ledger[1])};
}

} // namespace talvera
