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

ModelStore::ModelStore(FileSystem& files, const Directories& directories)
    : applicationSupportDir(requiredApplicationSupport(directories) + QStringLiteral("/Talvera"))
    , modelsDir(applicationSupportDir + QStringLiteral("/models"))
    , downloadsDir(applicationSupportDir + QStringLiteral("/downloads"))
    , modelMainURL(modelsDir + QStringLiteral("/ggml-medium-q5_0.bin"))
    , modelEncoderURL(modelsDir + QStringLiteral("/ggml-medium-encoder.mlmodelc"))
    , m_files(files) {
    createIfPossible(m_files, modelsDir);
    createIfPossible(m_files, downloadsDir);
    recordReadiness();
}

bool ModelStore::isReady() const {
    const bool main = m_files.exists(modelMainURL) && !m_files.isDirectory(modelMainURL);
    return main && m_files.isDirectory(modelEncoderURL);
}

void ModelStore::recordReadiness() {
    m_readiness.set(isReady() ? Readiness::Ready : Readiness::Missing);
}

} // namespace talvera
