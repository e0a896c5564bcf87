// SPDX-License-Identifier: MIT
#pragma once

#include "FakeFileDownloads.h"
#include "FakeFileSystem.h"
#include "SimulatedMainActor.h"
#include "models/ModelDownloader.h"
#include "models/ModelStore.h"
#include "platform/system/ChildProcess.h"
#include "platform/system/Directories.h"

#include <QCryptographicHash>
#include <QStringList>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <ostream>
#include <vector>

namespace talvera {

inline void PrintTo(const ModelDownloader::Phase& phase, std::ostream* stream) {
    constexpr std::array names{"idle", "downloading", "verifying", "extracting", "done", "failed"};
    *stream << names.at(static_cast<std::size_t>(phase.kind()));
    if (phase == ModelDownloader::Phase::failed(phase.message()))
        *stream << "(" << phase.message().toStdString() << ")";
}

} // namespace talvera

namespace talvera::test {

/// An unzip that makes the encoder's directory, or fails as it is told.
class FakeUnzip final : public ChildProcess {
public:
    explicit FakeUnzip(FakeFileSystem& files)
        : m_files(files) {}

    ChildProcessResult run(const ChildProcessRequest& request) override {
        requests.push_back(request);
        if (launchFailure)
            throw PlatformError(QStringLiteral("ChildProcess"), *launchFailure);
        m_files.createDirectories(request.arguments.last() + unpacked);
        return {.status = status, .standardError = standardError};
    }

    QString unpacked = QStringLiteral("/ggml-medium-encoder.mlmodelc");
    int status = 0;
    QByteArray standardError;
    std::optional<int> launchFailure;
    std::vector<ChildProcessRequest> requests;

private:
    FakeFileSystem& m_files;
};

/// A downloader over servers, disk and clock that do as they are told. Its two files are small ones with
/// digests of their own; their expected sizes are those of the real ones.
class ModelDownloaderTest : public testing::Test {
protected:
    using Phase = ModelDownloader::Phase;

    static constexpr qint64 mainSize = 539'212'467;
    static constexpr qint64 encoderSize = 314'572'800;

    const QByteArray mainBytes = "the model";
    const QByteArray archiveBytes = "the archive";

    static QString sha(const QByteArray& bytes) {
        return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    }
    virtual ModelSource source() const {
        auto both = ModelSource::of(QUrl("https://models.example.org/ggml-medium-q5_0.bin"),
                                    QUrl("https://models.example.org/ggml-medium-encoder.mlmodelc.zip"));
        both.main.sha256 = sha(mainBytes);
        both.encoder.sha256 = sha(archiveBytes);
        return both;
    }

    /// Makes store and downloader; what is on disk before is there for them.
    ModelDownloader& make() {
        const auto items =
            source().hasEncoder() ? ModelStore::Items::MainFileAndEncoder : ModelStore::Items::MainFileAlone;
        store = std::make_unique<ModelStore>(files, directories, items);
        downloader = std::make_unique<ModelDownloader>(
            ModelDownloader::Parts{.background = background,
                                   .network = network,
                                   .files = files,
                                   .processes = unzip,
                                   .directories = directories,
                                   .makeFreshName = [this] { return QStringLiteral("NAME-%1").arg(++names); },
                                   .store = *store,
                                   .source = source()});
        observations.push_back(
            downloader->phase.observe([this](const Phase& phase) { phases.push_back(phase); }));
        return *downloader;
    }
    ModelDownloader& start() {
        auto& made = make();
        made.start();
        return made;
    }

    void placeMain() { files.write(mainPath, "placed by hand"); }
    void placeEncoder() { files.createDirectories(encoderPath); }

    /// The running transfer of that file.
    FakeFileDownloads::Transfer& transfer(const char* end) {
        for (auto at = network.transfers.rbegin(); at != network.transfers.rend(); ++at) {
            if ((*at)->request.url.path().endsWith(QString::fromUtf8(end)))
                return **at;
        }
        ADD_FAILURE() << "nobody asked for " << end;
        std::abort();
    }
    FakeFileDownloads::Transfer& mainTransfer() { return transfer(".bin"); }
    FakeFileDownloads::Transfer& encoderTransfer() { return transfer(".zip"); }

    /// The server has sent the file, and what follows has been done.
    void deliver(FakeFileDownloads::Transfer& transfer, const QByteArray& bytes) {
        transfer.finish(bytes);
        actor.settle();
    }

    Phase phase() const { return downloader->phase.get(); }
    QStringList downloads() const {
        QStringList found;
        for (const auto& path : files.files()) {
            if (path.startsWith(store->downloadsDir + u'/'))
                found << path.mid(store->downloadsDir.size() + 1);
        }
        return found;
    }

    SimulatedMainActor actor;
    SimulatedBackgroundPool background{actor};
    Directories directories{"/run/talvera", "/data", "/config", "/opt/talvera"};
    FakeFileSystem files{{directories.temporary, "/data/Talvera/models", "/data/Talvera/downloads"}};
    FakeFileDownloads network{actor, files};
    FakeUnzip unzip{files};
    const QString mainPath = "/data/Talvera/models/ggml-medium-q5_0.bin";
    const QString encoderPath = "/data/Talvera/models/ggml-medium-encoder.mlmodelc";
    int names = 0;
    std::unique_ptr<ModelStore> store;
    std::unique_ptr<ModelDownloader> downloader;
    std::vector<Phase> phases; ///< all that were shown, in order
    Cancellables observations;
};

/// The model is its main file alone.
class MainFileDownloadTest : public ModelDownloaderTest {
protected:
    ModelSource source() const override {
        auto alone = ModelSource::of(QUrl("https://models.example.org/ggml-medium-q5_0.bin"));
        alone.main.sha256 = sha(mainBytes);
        return alone;
    }
};

} // namespace talvera::test
