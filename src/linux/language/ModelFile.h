// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace talvera {

/// What the head of a GGUF file says of the model in it, as far as it concerns us.
struct ModelFile {
    /// How many tokens half an hour of talk takes, with the instructions and the answer.
    static constexpr std::int64_t contextOfLongestText = 16384;

    QString architecture;
    QString name;          ///< as its makers call it; may be empty
    QString family;        ///< its name without size and version; may be empty
    QStringList languages; ///< as tags; empty when the file doesn't say
    qint64 size = 0;       ///< of the file in bytes

    // What decides how much memory a text takes; 0 when the file doesn't say.
    std::int64_t contextLength = 0; ///< in tokens
    std::int64_t layers = 0;
    std::int64_t widthOfKeysAndValues = 0; ///< numbers per token and layer, of both together

    /// Reads the head, up to the vocabulary; nothing when the file is none of a model, or can't be read.
    static std::optional<ModelFile> read(const QString& path);

    /// How many tokens the server shall hold: a long dictation with its instructions and the answer, unless
    /// the model was made for less.
    std::int64_t servedContext() const;

    /// What serving it takes in bytes of memory, about.
    qint64 memoryNeeded() const;
};

} // namespace talvera
