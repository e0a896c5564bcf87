// SPDX-License-Identifier: MIT
#include "shell/texts/TextCatalog.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace talvera {

std::optional<TextCatalog::Texts> TextCatalog::parse(const QByteArray& json) {
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    Texts texts;
    const auto object = document.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (const auto text = entry.value().toString(); !text.isEmpty())
            texts.insert(entry.key().toUtf8(), text);
    }
    return texts;
}

QString TextCatalog::translate(const char*, const char* key, const char*, int number) const {
    if (number >= 0) {
        if (const auto text = m_texts.value(key + ("." + m_plurals.formOf(number))); !text.isEmpty())
            return text;
    }
    return m_texts.value(QByteArray::fromRawData(key, static_cast<qsizetype>(qstrlen(key))));
}

} // namespace talvera
