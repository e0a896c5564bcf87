// SPDX-License-Identifier: MIT
#pragma once

#include "linux/language/ModelFile.h"
#include "linux/support/FileDescriptor.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QSocketNotifier;

namespace talvera {

/// The directory into which the user puts language models, as GGUF files. It is made if it is missing, and
/// watched: no timer looks. Main thread only; it works from the event loop.
class ModelFolder {
public:
    /// A file there that is a model.
    struct Entry {
        QString fileName;
        QString path;
        QDateTime changed; ///< the file, at last
        ModelFile model;

        bool isSameFile(const Entry& other) const {
            return path == other.path && changed == other.changed && model.size == other.model.size;
        }
    };

    explicit ModelFolder(QString directory);
    ~ModelFolder();
    ModelFolder(const ModelFolder&) = delete;
    ModelFolder& operator=(const ModelFolder&) = delete;

    const QString& directory() const { return m_directory; }

    /// By file name.
    const std::vector<Entry>& entries() const { return m_entries; }

    /// Changes are noticed. Else they are found by look() alone.
    bool isWatched() const { return m_isWatched; }

    /// Called when the entries may have become other ones.
    std::function<void()> onChange;

    /// Makes and watches the directory again, if it has gone, and looks what lies there.
    void look();

private:
    void watch();
    void list();

    const QString m_directory;
    std::vector<Entry> m_entries;
    FileDescriptor m_changes; ///< inotify's
    std::unique_ptr<QSocketNotifier> m_changed;
    bool m_isWatched = false;
};

} // namespace talvera
