// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace talvera {

/// The desktop's notifications. Main thread only.
class Notifier {
public:
    virtual ~Notifier() = default;

    /// Shows a notification of plain texts and tells in a later turn whether the desktop took it.
    virtual void notify(const QString& title, const QString& text, std::function<void(bool shown)> done) = 0;
};

} // namespace talvera
