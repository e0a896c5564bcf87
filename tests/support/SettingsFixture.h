// SPDX-License-Identifier: MIT
#pragma once

#include "InMemoryPreferenceStore.h"
#include "PrintQt.h"
#include "SettingsMachine.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

namespace talvera::test {

/// What the machine of the settings stands on.
struct SettingsGround {
    SimulatedMainActor actor;
    SimulatedSerialQueue typing{actor};
    InMemoryPreferenceStore store;
    AppSettings preferences{store};
};

/// The settings, as a window shows them.
class SettingsFixture : public testing::Test, protected SettingsGround, protected SettingsMachine {
protected:
    using Special = HotkeyBinding::SpecialKey;

    SettingsFixture()
        : SettingsMachine(actor, typing, preferences) {}

    static void choose(ChoiceRow& row, const QString& text) {
        const auto index = row.options().indexOf(text);
        ASSERT_GE(index, 0) << text.toStdString();
        row.choose(static_cast<int>(index));
    }
};

} // namespace talvera::test
