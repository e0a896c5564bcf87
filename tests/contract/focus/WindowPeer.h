// SPDX-License-Identifier: MIT
#pragma once

#include "Peer.h"

#include <xcb/xcb.h>

namespace talvera::test {

/// A plain window of a program of its own, in front.
class WindowPeer : public Peer {
public:
    explicit WindowPeer(const QStringList& properties)
        : Peer(TALVERA_WINDOW_PEER, properties)
        , window(readUntil("mapped ").toUInt()) {
        tell("activate");
    }

    const xcb_window_t window;
};

} // namespace talvera::test
