// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace talvera {

/// A stored value. The types are told apart, and a stored false is not the same as nothing stored.
using PreferenceValue = std::variant<bool, std::int64_t, double, QString, QByteArray, QStringList>;

/// The user's preferences by key. Main thread only. Every change is durable soon after; a crash or a full
/// disk leaves the last whole state.
class PreferenceStore {
public:
    virtual ~PreferenceStore() = default;

    virtual std::optional<PreferenceValue> object(const QString& key) const = 0;
    virtual void set(const QString& key, const PreferenceValue& value) = 0;
    virtual void remove(const QString& key) = 0;

    /// The value if it is text.
    std::optional<QString> string(const QString& key) const;
    /// The value if it is data.
    std::optional<QByteArray> data(const QString& key) const;
    /// The value as a truth, read generously: any number but 0, and the words "true", "yes" and "1", are
    /// true. False when nothing is stored or it can't be read as one.
    bool boolean(const QString& key) const;
    /// The value if it converts to a truth: a bool, or a number 0 or 1.
    std::optional<bool> asBool(const QString& key) const;
    /// The value if it converts to a number: a number or a bool.
    std::optional<double> asDouble(const QString& key) const;
};

} // namespace talvera
