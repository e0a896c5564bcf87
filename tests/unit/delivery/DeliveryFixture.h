// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibility.h"
#include "FakeKeyEventPoster.h"
#include "FakePasteboard.h"
#include "FakeWorkspace.h"
#include "SimulatedMainActor.h"
#include "delivery/DeliverySettings.h"
#include "delivery/FocusTracker.h"
#include "delivery/TextInserter.h"

#include <gtest/gtest.h>

#include <vector>

namespace talvera::test {

struct FakeDeliverySettings final : DeliverySettings {
    bool protect = true;
    FocusProtectionMode mode = FocusProtectionMode::Reactivate;

    bool protectFocusTarget() const override { return protect; }
    FocusProtectionMode focusProtectionMode() const override { return mode; }
};

/// The whole of delivery over a fake desktop, on which an editor with a text field is in front.
class DeliveryFixture : public testing::Test {
protected:
    const FocusSnapshot editorSnapshot{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
    const RunningApplication browser{200, QStringLiteral("org.example.browser"), QStringLiteral("Browser")};

    SimulatedMainActor actor;
    FakeAccessibility accessibility;
    FakeWorkspace workspace;
    SimulatedSerialQueue queue{actor};
    FakePasteboard pasteboard;
    FakeKeyEventPoster keys{pasteboard};
    FakeDeliverySettings settings;
    FocusTracker tracker{actor, accessibility, workspace};

    std::vector<FocusNotice> shown;      ///< on the HUD, by the inserter itself
    std::vector<FocusNotice> handedOver; ///< to the caller's function
    std::vector<double> eventTimes;      ///< of each key event

    TextInserter::OnNotice collectHandedOver = [this](const FocusNotice& notice) {
        handedOver.push_back(notice);
    };
    TextInserter inserter{{actor, workspace, queue, keys, pasteboard},
                          tracker,
                          settings,
                          [this](const FocusNotice& notice) { shown.push_back(notice); }};

    DeliveryFixture() {
        workspace.runInFront({100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")});
        keys.onPost = [this](const PostedKeyEvent&) { eventTimes.push_back(actor.elapsed()); };
    }

    static std::vector<FocusNotice> notices(std::vector<FocusNotice> expected) { return expected; }

    void finishJobs() { ASSERT_TRUE(actor.runToRest(seconds(3600))); }
};

} // namespace talvera::test
