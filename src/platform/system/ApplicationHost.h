// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// How the program stands in the session: an agent without windows, or a program with the wizard in front.
enum class ActivationPolicy { Regular = 0, Accessory = 1 };

/// The process as the session sees it. Main thread only.
class ApplicationHost {
public:
    virtual ~ApplicationHost() = default;

    virtual void changeCurrentDirectory(const QString& path) = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Ends the program, in a later turn.
    virtual void terminate() = 0;
};

} // namespace talvera
