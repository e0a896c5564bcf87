// SPDX-License-Identifier: MIT
#include "models/downloadFailureText.h"

#include "models/ModelInstallation.h"
#include "platform/network/FileDownloads.h"
#include "text/Localization.h"

namespace talvera {

namespace {

QString networkText(DownloadFailure failure) {
    switch (failure) {
    case DownloadFailure::NoNetwork:
        return localized("download.failed.noNetwork", "There is no internet connection.");
    case DownloadFailure::ServerNotFound:
        return localized("download.failed.serverNotFound",
                         "The download server could not be found. Check your internet connection.");
    case DownloadFailure::ServerAway:
        return localized("download.failed.serverAway", "The download server can't be reached at the moment.");
    case DownloadFailure::ConnectionLost:
        return localized("download.failed.connectionLost", "The connection was cut off.");
    case DownloadFailure::ServerSilent:
        return localized("download.failed.serverSilent", "The download server has stopped answering.");
    case DownloadFailure::TookTooLong:
        return localized("download.failed.tookTooLong", "The download took longer than an hour.");
    case DownloadFailure::NotTrusted:
        return localized(
            "download.failed.notTrusted",
            "No secure connection: the server could not prove who it is. In a hotel or a café, sign in "
            "to the network first, and check the date of your computer.");
    case DownloadFailure::RedirectLoop:
        return localized("download.failed.redirectLoop", "The download server sends us round in circles.");
    case DownloadFailure::TooLarge:
        return localized("download.failed.tooLarge",
                         "The download server sent far more than the speech model.");
    case DownloadFailure::DiskFull:
        return localized("download.failed.diskFull", "The disk is full.");
    case DownloadFailure::CannotSave:
        return localized("download.failed.cannotSave", "The file could not be written to the disk.");
    case DownloadFailure::ProxyRefused:
        return localized("download.failed.proxyRefused", "The proxy refused the connection.");
    case DownloadFailure::Other:
        break;
    }
    return localized("download.failed.other", "The download was interrupted.");
}

} // namespace

QString downloadFailureText(const PlatformError& failure) {
    if (const auto network = failure.as<DownloadFailure>())
        return networkText(*network);
    if (failure.as<InstallationFailure>())
        return failure.message();
    if (failure.domain() == QStringLiteral("ChildProcess"))
        return localized("download.failed.noUnzip", "The program unzip can't be started.");
    if (failure.is(std::errc::no_space_on_device))
        return networkText(DownloadFailure::DiskFull);
    return localized("download.failed.disk", "The disk reports an error.");
}

} // namespace talvera
