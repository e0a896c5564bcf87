// SPDX-License-Identifier: MIT
#include "linux/applications/applicationOfWindow.h"

#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/support/applicationId.h"

#include <unistd.h>

namespace talvera {

namespace {

std::optional<QString> presentOrNothing(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace

RunningApplication applicationOfWindow(pid_t pid, const WindowIdentity& window,
                                       DesktopEntryCatalog& installed) {
    RunningApplication application{pid, {}, {}};
    if (pid == ::getpid())
        application.bundleID = QString::fromLatin1(applicationId);
    if (const auto entry = installed.find(window)) {
        application.bundleID = application.bundleID.value_or(entry->id);
        application.localizedName = presentOrNothing(entry->name);
    }
    const auto& ownWord = window.applicationId.isEmpty() ? window.windowClass : window.applicationId;
    if (!application.bundleID)
        application.bundleID = presentOrNothing(ownWord);
    if (!application.localizedName)
        application.localizedName =
            presentOrNothing(window.windowClass.isEmpty() ? ownWord : window.windowClass);
    return application;
}

} // namespace talvera
