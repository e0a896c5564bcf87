// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "persistence/Setting.h"
#include "text/CaseNames.h"

#include <QObject>
#include <QVariant>

#include <functional>
#include <optional>
#include <type_traits>

namespace talvera {

/// One preference as a view sees it: a value to bind to and to assign. Enumerations are told and taken by the
/// names that they are stored by. The setting outlives the model. Main thread only.
class SettingModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString key READ key CONSTANT)
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)

public:
    /// Of a truth value, a number, a text or an enumeration with a table of names.
    template <typename T>
    explicit SettingModel(Setting<T>& setting)
        : m_key(setting.key())
        , m_read([&setting] { return told(setting.get()); })
        , m_assign([&setting](const QVariant& value) {
            const auto found = taken<T>(value);
            if (found)
                setting.set(*found);
            return found.has_value();
        })
        , m_changes(setting.observe([this](const T&) { Q_EMIT valueChanged(); })) {}

    /// The key in the store, which is also the name of the preference.
    const QString& key() const { return m_key; }

    QVariant value() const { return m_read(); }

    /// Assigns the setting. What is no value of it changes nothing, and is complained of: the view is wrong.
    void setValue(const QVariant& value);

Q_SIGNALS:
    /// At each assignment of the setting, whoever made it.
    void valueChanged();

private:
    template <typename T>
    static QVariant told(const T& value) {
        if constexpr (NamedCases<T>)
            return rawValue(value);
        else
            return QVariant::fromValue(value);
    }

    template <typename T>
    static std::optional<T> taken(const QVariant& value) {
        if constexpr (NamedCases<T>)
            return fromRawValue<T>(value.toString());
        if constexpr (std::is_same_v<T, double>) { // views tell whole numbers apart from others
            if (value.typeId() == QMetaType::Int)
                return value.toDouble();
        }
        return value.metaType() == QMetaType::fromType<T>() ? std::optional(value.value<T>()) : std::nullopt;
    }

    QString m_key;
    std::function<QVariant()> m_read;
    std::function<bool(const QVariant&)> m_assign;
    Subscription m_changes;
};

} // namespace talvera
