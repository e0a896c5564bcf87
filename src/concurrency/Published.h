// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"

#include <functional>
#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace talvera {

/// Keeps a subscription alive; letting it go ends it.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> lifetime)
        : m_lifetime(std::move(lifetime)) {}

private:
    std::shared_ptr<void> m_lifetime;
};

/// Subscriptions that live as long as their owner.
using Cancellables = std::vector<Subscription>;

/// An observable value. Main thread only. Every assignment notifies, also one of an equal value.
template <typename T>
class Published {
public:
    using Observer = std::function<void(const T&)>;

    explicit Published(T value = {})
        : m_value(std::move(value)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    const T& get() const { return m_value; }

    void set(T value) {
        m_value = std::move(value);
        notify();
    }

    /// Calls `observer` at once on every assignment from now on.
    [[nodiscard]] Subscription observe(Observer observer) {
        auto entry = std::make_shared<Observer>(std::move(observer));
        m_observers.push_back(entry);
        return Subscription(std::move(entry));
    }

    /// Delivers the present value and every later one to `observer`, each in a turn of its own on the main
    /// actor.
    [[nodiscard]] Subscription subscribe(MainActor& actor, Observer observer) {
        auto shared = std::make_shared<Observer>(std::move(observer));
        const auto deliver = [&actor, weak = std::weak_ptr<Observer>(shared)](const T& value) {
            actor.post([weak, value] {
                if (const auto alive = weak.lock())
                    (*alive)(value);
            });
        };
        deliver(m_value);
        auto relay = std::make_shared<Observer>(deliver);
        m_observers.push_back(relay);
        auto both =
            std::make_shared<std::pair<std::shared_ptr<Observer>, std::shared_ptr<Observer>>>(shared, relay);
        return Subscription(std::move(both));
    }

private:
    void notify() {
        const T value = m_value; // an observer may assign again
        const auto observers = m_observers;
        for (const auto& weak : observers) {
            if (const auto alive = weak.lock())
                (*alive)(value);
        }
        m_observers.remove_if([](const auto& weak) { return weak.expired(); });
    }

    T m_value;
    std::list<std::weak_ptr<Observer>> m_observers;
};

} // namespace talvera
