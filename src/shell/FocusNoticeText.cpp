// SPDX-License-Identifier: MIT
#include "shell/FocusNoticeText.h"

#include "shell/Localization.h"

namespace talvera {

namespace {

QString nameOr(const QString& appName, const char* defaultText) {
    return appName.isEmpty() ? localized("hud.focus.clipboard.originalApp", defaultText) : appName;
}

FocusNoticeText warning(const QString& text) {
    return {text, DictationHUDState::NoticeTone::Warn, seconds(6.0)};
}

} // namespace

FocusNoticeText focusNoticeText(const FocusNotice& notice) {
    switch (notice.kind) {
    case FocusNotice::Kind::PastedIn:
        return {formatted(localized("hud.focus.reactivated", "Pasted in %@"), notice.appName),
                DictationHUDState::NoticeTone::Info, seconds(3.0)};
    case FocusNotice::Kind::ClipboardOriginalGone:
        return warning(formatted(localized("hud.focus.clipboard.originalGone",
                                           "%@ closed — text copied to clipboard. Press ⌘V to paste."),
                                 nameOr(notice.appName, "The app")));
    case FocusNotice::Kind::ClipboardReactivateFailed:
        return warning(
            formatted(localized("hud.focus.clipboard.reactivateFailed",
                                "Couldn't switch back to %@ — text copied to clipboard. Press ⌘V to paste."),
                      nameOr(notice.appName, "the app")));
    case FocusNotice::Kind::ClipboardByUserPreference:
        return warning(localized("hud.focus.clipboard.byPreference",
                                 "Focus changed — text copied to clipboard. Press ⌘V to paste."));
    case FocusNotice::Kind::ClipboardNoTextField:
        return warning(localized("hud.focus.clipboard.noTextField",
                                 "No text field focused — text copied to clipboard. Press ⌘V to paste."));
    }
    Q_UNREACHABLE();
}

} // namespace talvera
