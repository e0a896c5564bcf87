// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "linux/network/QtFileDownloads.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "models/ModelDownloader.h"
#include "models/ModelStore.h"
#include "platform/system/Directories.h"

#include <QUuid>

#include <ostream>
#include <utility>

namespace talvera {

inline void PrintTo(const ModelDownloader::Phase& phase, std::ostream* stream) {
    *stream << "phase " << static_cast<int>(phase.kind()) << " " << phase.message().toStdString();
}

} // namespace talvera

namespace talvera::test {

/// A downloader as the program has it, over real servers, disk and unzip, for a user whose data lie in a
/// directory of their own.
class ModelHome {
public:
    ModelHome(const QString& data, ModelSource modelSource, QtFileDownloads::Options options)
        : directories{data, data, data, data}
        , source(std::move(modelSource))
        , network(actor, std::move(options)) {}
    ~ModelHome() {
        processes.endAll();
        background.finish();
    }
    ModelHome(const ModelHome&) = delete;
    ModelHome& operator=(const ModelHome&) = delete;

    QtMainActor actor;
    const Directories directories;
    const ModelSource source;
    PosixFileSystem files;
    PosixChildProcess processes;
    QtFileDownloads network;
    ModelStore store{files, directories,
                     source.hasEncoder() ? ModelStore::Items::MainFileAndEncoder
                                         : ModelStore::Items::MainFileAlone};
    ThreadBackgroundPool background{actor};
    ModelDownloader downloader{
        {.background = background,
         .network = network,
         .files = files,
         .processes = processes,
         .directories = directories,
         .makeFreshName = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(); },
         .store = store,
         .source = source}};
};

} // namespace talvera::test
