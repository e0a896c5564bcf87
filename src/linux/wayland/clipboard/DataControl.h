// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvera {

class WaylandConnection;

/// The clipboard and the primary selection of a Wayland session, for programs without a window. The owner of
/// this object has the connection's events told. One thread.
class DataControl {
public:
    enum class Selection { Clipboard, Primary };

    /// Hears what becomes of the selections that have been taken.
    class Owner {
    public:
        virtual ~Owner() = default;
        /// A program wants the selection in one of the formats that were offered, through this pipe.
        virtual void onRequest(const std::string& format, FileDescriptor pipe) = 0;
        /// Another program has taken it.
        virtual void onLost(Selection selection) = 0;
    };

    /// By whichever of the known ways the compositor has; null where it has none. `connection` and `owner`
    /// outlive the result.
    static std::unique_ptr<DataControl> open(WaylandConnection& connection, Owner& owner);
    static bool isOffered(const WaylandConnection& connection);

    virtual ~DataControl() = default;

    /// Takes the selection, in these formats. What was taken before is replaced.
    virtual void take(Selection selection, const std::vector<std::string>& formats) = 0;
    virtual bool isOurs(Selection selection) const = 0;

    /// Another program has put something there.
    virtual bool isForeign(Selection selection) const = 0;

    /// Whether there is such a selection at all: the oldest form of this has no primary one.
    virtual bool has(Selection selection) const = 0;

    /// The compositor has ended it: nothing can be taken any more.
    virtual bool isFinished() const = 0;
};

} // namespace talvera
