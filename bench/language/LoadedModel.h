// SPDX-License-Identifier: MIT
#pragma once

#include "InMemoryPreferenceStore.h"
#include "RecordingConsole.h"
#include "concurrency/QtMainActor.h"
#include "linux/language/LlamaLanguageModel.h"
#include "linux/language/chatProtocol.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/Directories.h"
#include "support/Figure.h"

#include <QTemporaryDir>

#include <optional>

namespace talvera::bench {

/// How long an answer took.
struct AnswerTime {
    double firstPiece = 0; ///< milliseconds from the question to the first text
    double lastPiece = 0;  ///< and to the last
    int pieces = 0;
};

/// After so many texts an answer is broken off: a model with weights at random comes to no end.
inline constexpr int mostPieces = 32;

/// A language model that stands ready, behind a server of our own. Throws std::runtime_error when it can't be
/// loaded or an answer fails.
class LoadedModel {
public:
    explicit LoadedModel(const QString& file);

    /// Asks as the agent does.
    AnswerTime ask(const ChatQuestion& question);

    /// Asks the same server the same by nothing but a socket, whose pieces are not read but counted.
    AnswerTime askBare(const ChatQuestion& question) const;

private:
    QTemporaryDir m_root;
    Directories m_directories;
    QtMainActor m_actor;
    PosixFileSystem m_files;
    test::InMemoryPreferenceStore m_preferences;
    test::RecordingConsole m_console;
    std::optional<LlamaLanguageModel> m_model;
};

} // namespace talvera::bench
