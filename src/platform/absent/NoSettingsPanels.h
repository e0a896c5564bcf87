// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Console.h"
#include "platform/SettingsPanels.h"

namespace talvera {

/// A desktop without settings of its own: says where to look instead.
class NoSettingsPanels final : public SettingsPanels {
public:
    explicit NoSettingsPanels(Console& console)
        : m_console(console) {}

    void open(Panel panel) override {
        m_console.print(
            panel == Panel::Microphone
                ? QStringLiteral("[settings] allow the microphone in this desktop's sound settings")
                : QStringLiteral("[settings] this session does not let Talvera watch and post keys"));
    }

private:
    Console& m_console;
};

} // namespace talvera
