// SPDX-License-Identifier: MIT
#include "models/ModelInstallation.h"

#include "models/ModelStore.h"
#include "models/sha256.h"
#include "platform/system/ChildProcess.h"
#include "platform/system/FileSystem.h"
#include "text/Localization.h"

#include <QStringDecoder>

namespace talvera {

namespace {

/// What the program says, or the stand-in for what is no text.
QString textOf(const QByteArray& bytes, const QString& otherwise) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? otherwise : text;
}

/// A file that is given up goes: nobody would take it up again.
bool isRight(FileSystem& files, const QString& path, const Verification& verification) {
    try {
        return sha256Hex(files, path, verification.isGivenUp) == verification.sha256;
    } catch (const PlatformError& error) {
        if (error.is(std::errc::operation_canceled))
            removeIfPossible(files, path);
        throw;
    }
}

} // namespace

void installMainFile(FileSystem& files, const ModelStore& store, const QString& path,
                     const Verification& verification) {
    if (!isRight(files, path, verification)) {
        removeIfPossible(files, path);
        throw PlatformError(InstallationFailure::WrongMainFile,
                            localized("download.failed.mainChecksum", "Main model checksum mismatch"));
    }
    try {
        files.removeAll(store.modelMainURL);
    } catch (const PlatformError&) { // the move says whether it stands in the way
    }
    files.move(path, store.modelMainURL);
}

void verifyEncoder(FileSystem& files, const QString& archive, const Verification& verification) {
    if (isRight(files, archive, verification))
        return;
    removeIfPossible(files, archive);
    throw PlatformError(InstallationFailure::WrongEncoder,
                        localized("download.failed.encoderChecksum", "Encoder checksum mismatch"));
}

void unpackEncoder(FileSystem& files, ChildProcess& processes, ModelStore& store, const QString& archive,
                   const QString& workingDirectory) {
    store.beginUnpacking();
    const auto result = processes.run(
        {QStringLiteral("/usr/bin/unzip"),
         {QStringLiteral("-q"), QStringLiteral("-o"), archive, QStringLiteral("-d"), store.modelsDir},
         workingDirectory});
    removeIfPossible(files, archive);
    if (result.status != 0) {
        const auto why = textOf(result.standardError, QStringLiteral("unzip failed"));
        throw PlatformError(InstallationFailure::NotUnpacked,
                            formatted(localized("download.failed.extract", "Extract failed: %@"), why));
    }
    store.endUnpacking();
}

} // namespace talvera
