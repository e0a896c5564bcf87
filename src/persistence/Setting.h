// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QString>

#include <functional>
#include <utility>

namespace talvera {

/// One preference: an observable value that every assignment, also of an equal value, first publishes and
/// then writes through to the store. Main thread only.
template <typename T>
class Setting {
public:
    using Value = T;
    using WriteThrough = std::function<void(const T&)>;

    Setting(QString key, T loaded, WriteThrough writeThrough)
        : m_key(std::move(key))
        , m_value(std::move(loaded))
        , m_writeThrough(std::move(writeThrough)) {}

    /// The key in the store, which is also the name of the preference.
    const QString& key() const { return m_key; }

    const T& get() const { return m_value.get(); }

    void set(T value) {
        m_value.set(std::move(value));
        m_writeThrough(m_value.get());
    }

    /// As Published::observe().
    [[nodiscard]] Subscription observe(typename Published<T>::Observer observer) {
        return m_value.observe(std::move(observer));
    }

    /// As Published::subscribe().
    [[nodiscard]] Subscription subscribe(MainActor& actor, typename Published<T>::Observer observer) {
        return m_value.subscribe(actor, std::move(observer));
    }

private:
    QString m_key;
    Published<T> m_value;
    WriteThrough m_writeThrough;
};

} // namespace talvera
