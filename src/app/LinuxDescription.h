// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/MachineDescription.h"

namespace talvera {

class PulseConnection;

/// The computer and the session that the program runs in. The connection outlives it.
class LinuxDescription final : public MachineDescription {
public:
    explicit LinuxDescription(PulseConnection& sound)
        : m_sound(sound) {}

    std::vector<MachineFact> facts() override;

private:
    PulseConnection& m_sound;
};

} // namespace talvera
