// SPDX-License-Identifier: MIT
#include "linux/language/ModelFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <utility>

#include <sys/inotify.h>

namespace talvera {

ModelFolder::ModelFolder(QString directory)
    : m_directory(std::move(directory))
    , m_changes(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (m_changes.isOpen()) {
        m_changed = std::make_unique<QSocketNotifier>(m_changes.get(), QSocketNotifier::Read);
        QObject::connect(m_changed.get(), &QSocketNotifier::activated, m_changed.get(), [this] {
            std::array<char, 4096> events;
            while (::read(m_changes.get(), events.data(), events.size()) > 0) {
            }
            look();
            if (onChange)
                onChange();
        });
    }
    look();
}

ModelFolder::~ModelFolder() = default;

void ModelFolder::look() {
    watch(); // before we list, so that nothing comes in between
    list();
}

/// A file that is being written counts when it is closed. One watch more for a directory that is watched
/// already is none.
void ModelFolder::watch() {
    const auto path = QFile::encodeName(m_directory);
    QDir().mkpath(m_directory);
    m_isWatched = ::inotify_add_watch(m_changes.get(), path.constData(),
                                      IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE |
                                          IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR) >= 0;
}

/// What hasn't changed isn't read again.
void ModelFolder::list() {
    std::vector<Entry> found;
    const auto files = QDir(m_directory).entryInfoList({QStringLiteral("*.gguf")}, QDir::Files, QDir::Name);
    for (const auto& info : files) {
        Entry entry{info.fileName(), info.absoluteFilePath(), info.lastModified(), {}};
        entry.model.size = info.size();
        const auto known = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&](const Entry& old) { return old.isSameFile(entry); });
        if (known != m_entries.end()) {
            found.push_back(*known);
        } else if (const auto model = ModelFile::read(entry.path)) {
            entry.model = *model;
            found.push_back(std::move(entry));
        }
    }
    m_entries = std::move(found);
}

} // namespace talvera
