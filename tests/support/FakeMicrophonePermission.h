// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/sound/MicrophonePermission.h"

#include <utility>

namespace talvera::test {

/// A microphone that the test grants and takes away. Changes are announced only if the test says so, since
/// not every machine notices them.
class FakeMicrophonePermission final : public MicrophonePermission {
public:
    explicit FakeMicrophonePermission(MainActor& actor)
        : m_actor(actor) {}

    AuthorizationStatus current = AuthorizationStatus::Authorized;
    /// What the user answers when asked.
    AuthorizationStatus answer = AuthorizationStatus::Authorized;

    /// Why it is denied.
    MicrophoneLack denial = MicrophoneLack::Microphone;

    AuthorizationStatus status() override { return current; }

    MicrophoneLack lack() override {
        if (current == AuthorizationStatus::Authorized)
            return MicrophoneLack::None;
        return current == AuthorizationStatus::NotDetermined ? MicrophoneLack::Answer : denial;
    }

    void requestAccess(std::function<void()> done) override {
        m_actor.post([this, done = std::move(done)] {
            current = answer;
            done();
        });
    }

    Subscription observe(std::function<void()> changed) override {
        auto observer = std::make_shared<std::function<void()>>(std::move(changed));
        m_observer = observer;
        return Subscription(std::move(observer));
    }

    /// Changes the status and tells the one who observes it.
    void change(AuthorizationStatus status) {
        current = status;
        if (const auto observer = m_observer.lock())
            (*observer)();
    }

private:
    MainActor& m_actor;
    std::weak_ptr<std::function<void()>> m_observer;
};

} // namespace talvera::test
