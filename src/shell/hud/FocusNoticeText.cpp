// SPDX-License-Identifier: MIT
#include "shell/hud/FocusNoticeText.h"

#include "text/Characters.h"
#include "text/Localization.h"

#include <cstddef>

namespace talvera {

namespace {

/// In characters as the user sees them. A longer name would push out of the notice what the user has to do.
constexpr std::size_t longestName = 40;

/// A long name loses its middle: names of one family differ at the end.
QString shortened(const QString& appName) {
    if (characterCount(appName) <= longestName)
        return appName;
    constexpr auto kept = (longestName - 1) / 2;
    return firstCharacters(appName, kept).trimmed() + u'…' + lastCharacters(appName, kept).trimmed();
}

QString nameOr(const QString& appName, const char* defaultText) {
    return appName.isEmpty() ? localized("hud.focus.clipboard.originalApp", defaultText) : shortened(appName);
}

FocusNoticeText warning(const QString& text) {
    return {text, DictationHUDState::NoticeTone::Warn, seconds(6.0)};
}

} // namespace

FocusNoticeText focusNoticeText(const FocusNotice& notice) {
    switch (notice.kind) {
    case FocusNotice::Kind::PastedIn:
        return {formatted(localized("hud.focus.reactivated", "Pasted in %@"), shortened(notice.appName)),
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
    case FocusNotice::Kind::ClipboardFocusLost:
        return warning(localized("hud.focus.clipboard.focusLost",
                                 "Focus changed — the whole text is on the clipboard. Press ⌘V to paste."));
    case FocusNotice::Kind::ClipboardNotPossible:
        return warning(localized("hud.focus.clipboard.notPossible",
                                 "Couldn't insert the text — it is on the clipboard. Press ⌘V to paste."));
    case FocusNotice::Kind::ClipboardNotTaken:
        return warning(
            localized("hud.focus.clipboard.notTaken",
                      "The app hasn't taken the text — it is on the clipboard. Press ⌘V to paste."));
    case FocusNotice::Kind::Undelivered:
        return warning(
            localized("hud.focus.undelivered", "The text is lost: it could neither be inserted nor copied."));
    }
    Q_UNREACHABLE();
}

} // namespace talvera
