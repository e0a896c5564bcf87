// SPDX-License-Identifier: MIT
#pragma once

#include "InMemoryPreferenceStore.h"
#include "OnboardingMachine.h"
#include "PrintQt.h"
#include "SimulatedMainActor.h"
#include "shell/onboarding/OnboardingWindow.h"

#include <gtest/gtest.h>

namespace talvera::test {

/// What the wizard's machine stands on.
struct OnboardingGround {
    SimulatedMainActor actor;
    SimulatedBackgroundPool background{actor};
    InMemoryPreferenceStore store;
    AppSettings preferences{store};
};

/// The wizard, and a window of it that `open()` opens.
class OnboardingFixture : public testing::Test, protected OnboardingGround, protected OnboardingMachine {
protected:
    using Phase = ModelDownloader::Phase;
    using Step = OnboardingController::Step;
    using Demo = DemoPhase::Kind;

    /// A window that counts how often it was brought to the front.
    class CountedWindow final : public WizardWindow {
    public:
        explicit CountedWindow(OnboardingFixture& owner)
            : m_owner(owner) {
            m_owner.shown = this;
        }
        ~CountedWindow() override { m_owner.shown = nullptr; }
        void bringToFront() override { ++m_owner.toFront; }

    private:
        OnboardingFixture& m_owner;
    };

    OnboardingFixture()
        : OnboardingMachine(actor, background, preferences) {}

    void open() { window.show(); }
    /// Closes the window as its close button does.
    void close() {
        shown->onClosed();
        actor.settle();
    }
    void hold(double held) {
        controller.demoPressStart();
        actor.advance(seconds(held));
        controller.demoPressEnd();
    }
    Demo demo() const { return controller.demoPhase.get().kind; }

    CountedWindow* shown = nullptr;
    int toFront = 0;
    OnboardingWindow window{actor, controller, [this] { return std::make_unique<CountedWindow>(*this); }};
};

} // namespace talvera::test
