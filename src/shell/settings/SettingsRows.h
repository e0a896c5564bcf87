// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/Binding.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace talvera {

/// What stands beside a control.
struct RowText {
    QString title;
    QString subtitle;
};

/// A setting with its control: what the row says, and when the control can be used. Main thread only.
class SettingsRow : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)

public:
    using Rule = std::function<bool()>;

    const QString& title() const { return m_text.title; }
    /// What explains the row; why it can't be used, while it can't.
    const QString& subtitle() const { return isEnabled() ? m_text.subtitle : m_whyDisabled; }
    bool isEnabled() const { return !m_enabled || m_enabled(); }
    bool isShown() const { return !m_shown || m_shown(); }
    /// Why the last change failed; empty when it didn't.
    const QString& problem() const { return m_problem; }

    void enableWhile(Rule rule, const QString& whyNot);
    void showWhile(Rule rule);
    void setProblem(const QString& problem);

    /// What a rule goes by: the row is told anew when this is assigned.
    template <typename T>
    void follow(Setting<T>& setting) {
        m_cancellables.push_back(setting.observe([this](const T&) { Q_EMIT changed(); }));
    }

Q_SIGNALS:
    /// Anything about the row may have changed.
    void changed();

protected:
    explicit SettingsRow(RowText text)
        : m_text(std::move(text)) {}

    template <typename T>
    void follow(const Binding<T>& binding) {
        if (binding.observe)
            m_cancellables.push_back(binding.observe([this] { Q_EMIT changed(); }));
    }

private:
    RowText m_text;
    QString m_whyDisabled;
    QString m_problem;
    Rule m_enabled;
    Rule m_shown;
    Cancellables m_cancellables;
};

// The rows below name their base by its whole name, by which the checks of the views find it.

/// A switch.
class SwitchRow final : public talvera::SettingsRow {
    Q_OBJECT
    Q_PROPERTY(bool isOn READ isOn NOTIFY changed)

public:
    SwitchRow(RowText text, Binding<bool> binding);

    bool isOn() const { return m_binding.read(); }
    /// What the user has switched it to; nothing while it can't be used.
    Q_INVOKABLE void set(bool on);

private:
    const Binding<bool> m_binding;
};

/// One of several.
class ChoiceRow final : public talvera::SettingsRow {
    Q_OBJECT
    Q_PROPERTY(QStringList options READ options NOTIFY changed)
    Q_PROPERTY(int current READ current NOTIFY changed)
    Q_PROPERTY(QString currentText READ currentText NOTIFY changed)

public:
    struct Choice {
        QString value;
        QString text;
    };

    ChoiceRow(RowText text, std::vector<Choice> choices, Binding<QString> binding);

    QStringList options() const;
    /// There is something else to choose from now, or what is chosen has changed.
    void setChoices(std::vector<Choice> choices);
    /// The place of what is chosen; -1 when none of them is.
    int current() const;
    QString currentText() const;
    /// Chooses the one in that place, also if it is chosen already; other places are left alone.
    Q_INVOKABLE void choose(int index);

private:
    std::vector<Choice> m_choices;
    const Binding<QString> m_binding;
};

/// A number between two others.
class SliderRow final : public talvera::SettingsRow {
    Q_OBJECT
    Q_PROPERTY(double from READ from CONSTANT)
    Q_PROPERTY(double to READ to CONSTANT)
    Q_PROPERTY(double step READ step CONSTANT)
    Q_PROPERTY(double value READ value NOTIFY changed)
    Q_PROPERTY(QString valueText READ valueText NOTIFY changed)

public:
    struct Range {
        double from = 0;
        double to = 0;
        double step = 1;
    };

    SliderRow(RowText text, Range range, Binding<double> binding, std::function<QString(double)> inWords);

    double from() const { return m_range.from; }
    double to() const { return m_range.to; }
    double step() const { return m_range.step; }
    /// As it stands, also where that lies beside the range.
    double value() const { return m_binding.read(); }
    QString valueText() const { return m_inWords(value()); }
    /// Assigns the nearest step within the range; what is no number changes nothing.
    Q_INVOKABLE void setValue(double value);

private:
    const Range m_range;
    const Binding<double> m_binding;
    const std::function<QString(double)> m_inWords;
};

} // namespace talvera
