// SPDX-License-Identifier: MIT
#include "models/ModelStore.h"

#include "platform/system/PlatformError.h"

namespace talvera {

namespace {

QString requiredApplicationSupport(const Directories& directories) {
    if (directories.applicationSupport.isEmpty())
        qFatal("no application support directory");
    return directories.applicationSupport;
}

void createIfPossible(FileSystem& files, const QString& path) {
    try {
        files.createDirectories(path);
    } catch (const PlatformError&) { // the download that writes there reports it better
    }
}

} // namespace

ModelStore::ModelStore(FileSystem& files, const Directories& directories, Items items)
    : applicationSupportDir(requiredApplicationSupport(directories) + QStringLiteral("/Talvera"))
    , modelsDir(applicationSupportDir + QStringLiteral("/models"))
    , downloadsDir(applicationSupportDir + QStringLiteral("/downloads"))
    , modelMainURL(modelsDir + QStringLiteral("/ggml-medium-q5_0.bin"))
    , modelEncoderURL(modelsDir + QStringLiteral("/ggml-medium-encoder.mlmodelc"))
    , m_files(files)
    , m_items(items)
    , m_unpackingMark(modelsDir + QStringLiteral("/encoder.unpacking")) {
    createIfPossible(m_files, modelsDir);
    createIfPossible(m_files, downloadsDir);
    discardHalfUnpacked();
    recordReadiness();
}

bool ModelStore::isReady() const {
    return hasMainFile() && hasEncoder();
}

bool ModelStore::hasMainFile() const {
    return m_files.exists(modelMainURL) && !m_files.isDirectory(modelMainURL);
}

bool ModelStore::hasEncoder() const {
    return m_items == Items::MainFileAlone || m_files.isDirectory(modelEncoderURL);
}

void ModelStore::recordReadiness() {
    m_readiness.set(isReady() ? Readiness::Ready : Readiness::Missing);
}

void ModelStore::beginUnpacking() {
    m_files.write(m_unpackingMark, {});
}

void ModelStore::endUnpacking() {
    m_files.remove(m_unpackingMark);
}

void ModelStore::discardHalfUnpacked() {
    if (!m_files.exists(m_unpackingMark))
        return;
    try {
        m_files.removeAll(modelEncoderURL);
        m_files.remove(m_unpackingMark);
    } catch (const PlatformError&) { // stays marked, and is tried again
    }
}

} // namespace talvera
