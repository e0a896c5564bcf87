// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

namespace talvera {

/// Tells callbacks that come late whether the object they work with still exists: `m_lifetime.ifAlive(f)` is
/// `f` that does nothing once the owner has gone. Declare it as the last member, so that it ends before the
/// others do.
///
/// The owner is destroyed and the callbacks run on one thread, which is the main thread nearly everywhere;
/// other threads may carry a callback back to it, and destroy it, but not call it.
class Lifetime {
public:
    /// What a coroutine keeps, to ask after each suspension whether its object is still there.
    class Token {
    public:
        bool isAlive() const { return !m_owner.expired(); }

    private:
        friend class Lifetime;
        explicit Token(std::weak_ptr<const char> owner)
            : m_owner(std::move(owner)) {}
        std::weak_ptr<const char> m_owner;
    };

    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    Token token() const { return Token(m_owner); }

    /// Calls `callback` with whatever it is called with as long as the owner exists; its result is dropped.
    template <typename Callback>
    auto ifAlive(Callback callback) const {
        return [token = token(), callback = std::move(callback)](auto&&... arguments) mutable {
            if (token.isAlive())
                callback(std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    std::shared_ptr<const char> m_owner = std::make_shared<const char>();
};

} // namespace talvera
