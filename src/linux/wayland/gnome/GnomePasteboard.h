// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Pasteboard.h"

#include <memory>

namespace talvera {

/// The X server's clipboard in a GNOME session. The Shell reads each text that comes there, to keep it for
/// when its owner has gone. That is nobody who pastes: a text counts as set only when it has been read so.
class GnomePasteboard final : public Pasteboard {
public:
    explicit GnomePasteboard(std::unique_ptr<Pasteboard> clipboard);

    /// Takes as long as the Shell needs to read it, and a quarter of a second where it doesn't.
    bool setString(const QString& text) override;
    State state() override { return m_clipboard->state(); }

private:
    const std::unique_ptr<Pasteboard> m_clipboard;
};

} // namespace talvera
