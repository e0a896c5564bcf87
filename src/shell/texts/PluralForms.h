// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <unicode/uversion.h>

#include <memory>

U_NAMESPACE_BEGIN
class PluralRules;
U_NAMESPACE_END

namespace talvera {

/// Which forms a language has for things that are counted, and which number takes which.
class PluralForms {
public:
    /// Of the language `code`, such as "pl" or "pt-BR". An unknown one has a single form.
    explicit PluralForms(const QString& code);
    ~PluralForms();
    PluralForms(PluralForms&&) noexcept;
    PluralForms& operator=(PluralForms&&) noexcept;

    /// The name of the form for `number`: "zero", "one", "two", "few", "many" or "other".
    QByteArray formOf(int number) const;

private:
    std::unique_ptr<const icu::PluralRules> m_rules; ///< absent: one form for all
};

} // namespace talvera
