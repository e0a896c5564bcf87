// SPDX-License-Identifier: MIT
#include "shell/texts/PluralForms.h"

#include <unicode/locid.h>
#include <unicode/plurrule.h>
#include <unicode/unistr.h>

#include <string>

namespace talvera {

PluralForms::PluralForms(const QString& code) {
    auto status = U_ZERO_ERROR;
    const auto locale = icu::Locale::forLanguageTag(code.toStdString(), status);
    std::unique_ptr<const icu::PluralRules> rules(icu::PluralRules::forLocale(locale, status));
    if (U_SUCCESS(status))
        m_rules = std::move(rules);
}

PluralForms::~PluralForms() = default;
PluralForms::PluralForms(PluralForms&&) noexcept = default;
PluralForms& PluralForms::operator=(PluralForms&&) noexcept = default;

QByteArray PluralForms::formOf(int number) const {
    if (!m_rules)
        return QByteArrayLiteral("other");
    std::string name;
    m_rules->select(number).toUTF8String(name);
    return QByteArray::fromStdString(name);
}

} // namespace talvera
