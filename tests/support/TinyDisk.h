// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <sys/mount.h>

namespace talvera::test {

/// A file system of a few bytes, mounted at a directory that it makes. Needs root.
class TinyDisk {
public:
    TinyDisk(const QString& directory, int bytes)
        : m_directory(QFile::encodeName(directory)) {
        QDir().mkpath(directory);
        const auto options = "mode=0700,size=" + QByteArray::number(bytes);
        m_mounted = ::mount("tmpfs", m_directory.constData(), "tmpfs", MS_NOSUID | MS_NODEV,
                            options.constData()) == 0;
    }
    TinyDisk(const TinyDisk&) = delete;
    TinyDisk& operator=(const TinyDisk&) = delete;
    ~TinyDisk() {
        if (m_mounted)
            ::umount2(m_directory.constData(), MNT_DETACH);
    }

    bool isMounted() const { return m_mounted; }

private:
    QByteArray m_directory;
    bool m_mounted = false;
};

} // namespace talvera::test
