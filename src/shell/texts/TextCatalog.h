// SPDX-License-Identifier: MIT
#pragma once

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

    explicit TextCatalog(Texts texts)
        : m_texts(std::move(texts)) {}

    QString translate(const char* context, const char* key, const char* disambiguation, int n) const override;
    bool isEmpty() const override { return m_texts.isEmpty(); }

private:
    Texts m_texts;
};

} // namespace talvera
