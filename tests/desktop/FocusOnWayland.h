// SPDX-License-Identifier: MIT
#pragma once

#include "OnWayland.h"
#include "RecogniserGate.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace talvera::test {

/// Dictations whose recognition waits, so that the user can be somewhere else when it comes.
class FocusOnWayland : public OnWayland {
protected:
    /// Dictates into an editor; when this returns the recognition waits to be let in.
    void dictateInto(std::optional<Receiver>& editor, const QJsonObject& preferences = {},
                     const QString& text = sentence) {
        startAgentOf(gate.program(), preferences);
        editor.emplace(Receiver::Kind::Gtk, "the editor");
        holdAndSay(spoken(text));
        gate.awaitRun();
    }
    void expectNotice(const QString& text) {
        const auto notice = agent->await("hud notice");
        EXPECT_TRUE(notice.contains(text)) << notice.toStdString();
    }

    /// The words that follow name the keys to paste with.
    static inline const QString onClipboard = QStringLiteral(" — text copied to clipboard.");

    RecogniserGate gate;
};

} // namespace talvera::test
