// SPDX-License-Identifier: MIT
#include "shell/settings/SettingsRows.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace talvera {

void SettingsRow::enableWhile(Rule rule, const QString& whyNot) {
    m_enabled = std::move(rule);
    m_whyDisabled = whyNot;
}

void SettingsRow::showWhile(Rule rule) {
    m_shown = std::move(rule);
}

void SettingsRow::setProblem(const QString& problem) {
    m_problem = problem;
    Q_EMIT changed();
}

SwitchRow::SwitchRow(RowText text, Binding<bool> binding)
    : SettingsRow(std::move(text))
    , m_binding(std::move(binding)) {
    follow(m_binding);
}

void SwitchRow::set(bool on) {
    if (isEnabled())
        m_binding.assign(on);
}

ChoiceRow::ChoiceRow(RowText text, std::vector<Choice> choices, Binding<QString> binding)
    : SettingsRow(std::move(text))
    , m_choices(std::move(choices))
    , m_binding(std::move(binding)) {
    follow(m_binding);
}

QStringList ChoiceRow::options() const {
    QStringList texts;
    for (const auto& choice : m_choices)
        texts << choice.text;
    return texts;
}

void ChoiceRow::setChoices(std::vector<Choice> choices) {
    m_choices = std::move(choices);
    Q_EMIT changed();
}

int ChoiceRow::current() const {
    const auto value = m_binding.read();
    const auto found = std::find_if(m_choices.begin(), m_choices.end(),
                                    [&value](const Choice& choice) { return choice.value == value; });
    return found == m_choices.end() ? -1 : static_cast<int>(found - m_choices.begin());
}

QString ChoiceRow::currentText() const {
    return options().value(current());
}

void ChoiceRow::choose(int index) {
    if (isEnabled() && index >= 0 && static_cast<std::size_t>(index) < m_choices.size())
        m_binding.assign(m_choices[static_cast<std::size_t>(index)].value);
}

SliderRow::SliderRow(RowText text, Range range, Binding<double> binding,
                     std::function<QString(double)> inWords)
    : SettingsRow(std::move(text))
    , m_range(range)
    , m_binding(std::move(binding))
    , m_inWords(std::move(inWords)) {
    follow(m_binding);
}

void SliderRow::setValue(double value) {
    if (!isEnabled() || std::isnan(value))
        return;
    const auto within = std::clamp(value, m_range.from, m_range.to);
    const auto steps = std::round((within - m_range.from) / m_range.step);
    m_binding.assign(std::min(m_range.from + steps * m_range.step, m_range.to));
}

} // namespace talvera
