// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace talvera {

/// A thing worth knowing of a machine that something went wrong on, in English.
struct MachineFact {
    QString name;
    QString value;

    bool operator==(const MachineFact&) const = default;
};

/// Tells what the program runs on. Main thread only; within milliseconds.
class MachineDescription {
public:
    virtual ~MachineDescription() = default;

    /// System, desktop, session, screens, processor and sound. Nothing of the user, whose name and files
    /// belong in no report.
    virtual std::vector<MachineFact> facts() = 0;
};

} // namespace talvera
