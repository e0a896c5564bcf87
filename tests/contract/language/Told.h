// SPDX-License-Identifier: MIT
#pragma once

#include "language/AICleanup.h"
#include "platform/language/LanguageModelSession.h"

#include <QStringList>

#include <optional>

namespace talvera::test {

/// All that a session has told.
struct Told {
    QStringList snapshots;
    int ends = 0;
    std::optional<AIFailure> failure;
    int callsAfterTheEnd = 0;

    LanguageModelSession::Listener listener() {
        const auto count = [this] { callsAfterTheEnd += ends; };
        return {.onSnapshot =
                    [this, count](const QString& content) {
                        count();
                        snapshots << content;
                    },
                .onFinished =
                    [this, count] {
                        count();
                        ++ends;
                    },
                .onFailed =
                    [this, count](const LanguageModelError& error) {
                        count();
                        ++ends;
                        failure = AICleanup::classify(error);
                    }};
    }

    QString text() const { return snapshots.isEmpty() ? QString() : snapshots.constLast(); }
};

} // namespace talvera::test
