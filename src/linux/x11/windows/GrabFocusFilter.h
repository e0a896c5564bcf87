// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>

namespace talvera {

/// Keeps from the toolkit that its window has lost the keyboard when that is only lent: a grab, ours of a
/// hotkey's chord for one, takes the keyboard while the chord is held and gives it back. When the user has
/// gone to another window meanwhile, the server tells that as well, and the toolkit hears of it. To be
/// made after the application object; main thread only.
class GrabFocusFilter final : public QAbstractNativeEventFilter {
public:
    GrabFocusFilter();

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
};

} // namespace talvera
