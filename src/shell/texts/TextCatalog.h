// SPDX-License-Identifier: MIT
#pragma once

#include "shell/texts/PluralForms.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QTranslator>

#include <optional>

namespace talvera {

/// The texts of one language by their dotted keys.
class TextCatalog final : public QTranslator {
public:
    using Texts = QHash<QByteArray, QString>;

    /// Reads a JSON object of texts. What isn't a text in it, or is an empty one, is left out; nothing when
    /// the bytes are no such object.
    static std::optional<Texts> parse(const QByteArray& json);

    /// `language` is the code of the language that the texts are in.
    TextCatalog(Texts texts, const QString& language)
        : m_texts(std::move(texts))
        , m_plurals(language) {}

    /// The text for `key`; with a `number` from 0 on the one for "KEY.FORM", if there is one, in the form
    /// that the language has for it.
    QString translate(const char* context, const char* key, const char* disambiguation,
                      int number) const override;
    bool isEmpty() const override { return m_texts.isEmpty(); }

private:
    Texts m_texts;
    PluralForms m_plurals;
};

} // namespace talvera
