// SPDX-License-Identifier: MIT
#include "shell/onboarding/AppSample.h"

#include "text/Localization.h"

namespace talvera {

namespace {

QVariant sample(const char* icon, const QString& name, const QString& text, bool mono = false) {
    return QVariant::fromValue(AppSample{QString::fromLatin1(icon), name, text, mono});
}

} // namespace

QVariantList appSamples() {
    return {
        sample("terminal", localized("onboarding.everywhere.terminal.name", "Terminal"),
               localized("onboarding.everywhere.terminal.sample",
                         "git commit -m \"Keep the login page open after a timeout\""),
               true),
        sample("bubble.left", localized("onboarding.everywhere.chat.name", "Slack"),
               localized("onboarding.everywhere.chat.sample",
                         "hey team, pushing the release candidate for review in ~30 min")),
        sample("envelope.fill", localized("onboarding.everywhere.mail.name", "Mail"),
               localized(
                   "onboarding.everywhere.mail.sample",
                   "Thanks for the quick reply! Thursday at ten works well for me. I'll bring the drafts.")),
        sample(
            "note.text", localized("onboarding.everywhere.notes.name", "Notes"),
            localized(
                "onboarding.everywhere.notes.sample",
                "Ideas for the trip: take the early train, and book the cabin by the lake for two nights.")),
        sample("paintpalette.fill", localized("onboarding.everywhere.design.name", "Design"),
               localized("onboarding.everywhere.design.sample",
                         "Make the heading larger and give the card more room to breathe.")),
        sample("chevron.left.forwardslash.chevron.right",
               localized("onboarding.everywhere.editor.name", "VS Code"),
               localized("onboarding.everywhere.editor.sample",
                         "// parse whisper output and return final transcript string"),
               true),
    };
}

} // namespace talvera
