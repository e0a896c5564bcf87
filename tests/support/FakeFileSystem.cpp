// SPDX-License-Identifier: MIT
#include "FakeFileSystem.h"

#include "platform/system/PlatformError.h"

#include <cerrno>
#include <cstring>

namespace talvera::test {

namespace {

[[noreturn]] void fail(int code, const QString& path) {
    throw PlatformError(QStringLiteral("FileSystem"), code,
                        QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(code))));
}

QString parentOf(const QString& path) {
    const auto slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}

void setOrClear(std::map<QString, int>& failures, const QString& path, int code) {
    if (code == 0)
        failures.erase(path);
    else
        failures[path] = code;
}

void failIfAsked(const std::map<QString, int>& failures, const QString& path) {
    if (const auto found = failures.find(path); found != failures.end())
        fail(found->second, path);
}

} // namespace

FakeFileSystem::FakeFileSystem(const QStringList& directories)
    : m_directories{{QStringLiteral("/"), 0}} {
    for (const auto& directory : directories)
        createDirectories(directory);
}

void FakeFileSystem::write(const QString& path, const QByteArray& bytes) {
    const std::scoped_lock lock(m_mutex);
    if (m_directories.count(path) != 0)
        fail(EISDIR, path);
    if (m_directories.count(parentOf(path)) == 0)
        fail(m_files.count(parentOf(path)) != 0 ? ENOTDIR : ENOENT, path);
    const auto old = m_files.find(path);
    const bool executable = old != m_files.end() && old->second.executable;
    if (old != m_files.end()) { // a failed write leaves nothing, not the old file
        m_used -= old->second.bytes.size();
        m_files.erase(old);
    }
    if (m_failingWrite && m_failingWrite->first-- == 0) {
        const auto code = m_failingWrite->second;
        m_failingWrite.reset();
        fail(code, path);
    }
    if (m_capacity && !bytes.isEmpty() && m_used + bytes.size() > *m_capacity)
        fail(ENOSPC, path);
    ++m_writes;
    m_files.emplace(path, File{bytes, executable, static_cast<quint64>(m_writes)});
    m_used += bytes.size();
}

QByteArray FakeFileSystem::read(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    failIfAsked(m_failingReads, path);
    if (m_directories.count(path) != 0)
        fail(EISDIR, path);
    const auto found = m_files.find(path);
    if (found == m_files.end())
        fail(ENOENT, path);
    return found->second.bytes;
}

void FakeFileSystem::readBlocks(const QString& path, qint64 blockSize,
                                const std::function<void(QByteArrayView block)>& visit) {
    const auto bytes = read(path);
    for (qsizetype begin = 0; begin < bytes.size(); begin += blockSize)
        visit(QByteArrayView(bytes).sliced(begin, std::min<qsizetype>(blockSize, bytes.size() - begin)));
}

void FakeFileSystem::move(const QString& from, const QString& to) {
    const std::scoped_lock lock(m_mutex);
    failIfAsked(m_failingMoves, to);
    const auto found = m_files.find(from);
    if (found == m_files.end())
        fail(ENOENT, from);
    if (m_directories.count(to) != 0)
        fail(EISDIR, to);
    if (m_directories.count(parentOf(to)) == 0)
        fail(m_files.count(parentOf(to)) != 0 ? ENOTDIR : ENOENT, to);
    if (from == to)
        return;
    if (const auto old = m_files.find(to); old != m_files.end())
        m_used -= old->second.bytes.size();
    m_files.insert_or_assign(to, std::move(found->second));
    m_files.erase(from);
}

void FakeFileSystem::removeAll(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    failIfAsked(m_failingRemovals, path);
    const auto goes = [&](const QString& name) { return name == path || name.startsWith(path + u'/'); };
    for (auto file = m_files.begin(); file != m_files.end();) {
        if (goes(file->first)) {
            m_used -= file->second.bytes.size();
            file = m_files.erase(file);
        } else {
            ++file;
        }
    }
    std::erase_if(m_directories, [&](const auto& directory) { return goes(directory.first); });
}

void FakeFileSystem::remove(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    failIfAsked(m_failingRemovals, path);
    if (const auto found = m_files.find(path); found != m_files.end()) {
        m_used -= found->second.bytes.size();
        m_files.erase(found);
        return;
    }
    if (m_directories.count(path) == 0)
        fail(ENOENT, path);
    const auto below = path + u'/';
    const auto file = m_files.lower_bound(below);
    const auto directory = m_directories.lower_bound(below);
    if ((file != m_files.end() && file->first.startsWith(below)) ||
        (directory != m_directories.end() && directory->first.startsWith(below)))
        fail(ENOTEMPTY, path);
    m_directories.erase(path);
}

void FakeFileSystem::createDirectories(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    std::vector<QString> missing;
    for (auto directory = path; m_directories.count(directory) == 0; directory = parentOf(directory)) {
        if (m_files.count(directory) != 0)
            fail(directory == path ? EEXIST : ENOTDIR, path);
        missing.push_back(directory);
    }
    for (const auto& directory : missing)
        m_directories.emplace(directory, ++m_made);
}

bool FakeFileSystem::exists(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    return m_files.count(path) != 0 || m_directories.count(path) != 0;
}

bool FakeFileSystem::isDirectory(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    return m_directories.count(path) != 0;
}

bool FakeFileSystem::isExecutableFile(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_files.find(path);
    return found != m_files.end() && found->second.executable;
}

std::optional<qint64> FakeFileSystem::size(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_files.find(path);
    return found == m_files.end() ? std::nullopt : std::optional<qint64>(found->second.bytes.size());
}

std::optional<FileStamp> FakeFileSystem::stamp(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_files.find(path);
    if (const auto directory = m_directories.find(path); directory != m_directories.end())
        return FileStamp{2, directory->second, 0, 0};
    if (found == m_files.end())
        return std::nullopt;
    return FileStamp{1, found->second.written, found->second.bytes.size(), 0};
}

void FakeFileSystem::readAhead(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    m_readAheads.append(path);
}

QStringList FakeFileSystem::readAheads() const {
    const std::scoped_lock lock(m_mutex);
    return m_readAheads;
}

std::optional<qint64> FakeFileSystem::availableBytes(const QString& directory) {
    const std::scoped_lock lock(m_mutex);
    if (m_directories.count(directory) == 0 || !m_capacity)
        return std::nullopt;
    return std::max<qint64>(*m_capacity - m_used, 0);
}

void FakeFileSystem::addExecutable(const QString& path) {
    createDirectories(parentOf(path));
    write(path, "#!");
    const std::scoped_lock lock(m_mutex);
    m_files[path].executable = true;
}

void FakeFileSystem::become(const FakeFileSystem& other) {
    const std::scoped_lock lock(m_mutex, other.m_mutex);
    m_files = other.m_files;
    m_directories = other.m_directories;
    m_made = other.m_made;
    m_used = other.m_used;
}

void FakeFileSystem::setCapacity(std::optional<qint64> bytes) {
    const std::scoped_lock lock(m_mutex);
    m_capacity = bytes;
}

void FakeFileSystem::failWriteAfter(int writes, int code) {
    const std::scoped_lock lock(m_mutex);
    m_failingWrite = std::pair{writes, code};
}

void FakeFileSystem::failReads(const QString& path, int code) {
    const std::scoped_lock lock(m_mutex);
    setOrClear(m_failingReads, path, code);
}

void FakeFileSystem::failRemovals(const QString& path, int code) {
    const std::scoped_lock lock(m_mutex);
    setOrClear(m_failingRemovals, path, code);
}

void FakeFileSystem::failMovesTo(const QString& path, int code) {
    const std::scoped_lock lock(m_mutex);
    setOrClear(m_failingMoves, path, code);
}

QStringList FakeFileSystem::files() const {
    const std::scoped_lock lock(m_mutex);
    QStringList paths;
    for (const auto& [path, file] : m_files)
        paths.append(path);
    return paths;
}

int FakeFileSystem::count(const QString& prefix, const QString& suffix) const {
    int result = 0;
    for (const auto& path : files()) {
        const auto name = path.mid(path.lastIndexOf(u'/') + 1);
        if (name.startsWith(prefix) && name.endsWith(suffix))
            ++result;
    }
    return result;
}

int FakeFileSystem::writes() const {
    const std::scoped_lock lock(m_mutex);
    return m_writes;
}

} // namespace talvera::test
