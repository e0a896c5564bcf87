// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PlatformError.h"

#include <QString>

#include <functional>

namespace talvera {

class ChildProcess;
class FileSystem;
class ModelStore;

/// What is wrong with a file that has been downloaded. The error's message is for the user.
enum class InstallationFailure { WrongMainFile = 10, WrongEncoder = 11, NotUnpacked = 12 };

inline QString platformDomain(InstallationFailure) {
    return QStringLiteral("ModelDownloader");
}

/// What a file's digest has to be, and who is asked, again and again, whether it matters no more.
struct Verification {
    QString sha256;
    std::function<bool()> isGivenUp;
};

/// The steps from a downloaded file to an item in its place. Each may take seconds: they are for any thread
/// but the main one. They throw PlatformError.
///
/// Throws WrongMainFile when the file's digest is another one, and std::errc::operation_canceled when it is
/// given up; the file is deleted in both cases. Else it is put in the place of the main file.
void installMainFile(FileSystem& files, const ModelStore& store, const QString& path,
                     const Verification& verification);

/// Throws WrongEncoder or std::errc::operation_canceled likewise; the archive is deleted then.
void verifyEncoder(FileSystem& files, const QString& archive, const Verification& verification);

/// Unpacks the archive into the directory of the models and deletes it, however that ended. Throws
/// NotUnpacked.
void unpackEncoder(FileSystem& files, ChildProcess& processes, ModelStore& store, const QString& archive,
                   const QString& workingDirectory);

} // namespace talvera
