// SPDX-License-Identifier: MIT
#include "InstalledCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace talvera::test {

namespace {

void linkAll(const QDir& from, const QDir& to, const QStringList& names) {
    for (const auto& name : from.entryList(names, QDir::AllEntries | QDir::NoDotAndDotDot))
        QFile::link(from.filePath(name), to.filePath(name));
}

QDir builtDirectory() {
    return QFileInfo(TALVERA_PROGRAM).dir();
}

} // namespace

InstalledCopy::InstalledCopy() {
    const QDir here(m_directory.path());
    // A copy and no link, since the program finds what belongs to it beside its own file.
    if (!QFile::copy(TALVERA_PROGRAM, program()) || !here.mkdir("Resources"))
        throw std::runtime_error("the program can't be copied");
    linkAll(builtDirectory(), here, {"talvera-*"});
    linkAll(builtDirectory().filePath("Resources"), here.filePath("Resources"), {});
}

QString InstalledCopy::built(const QString& resource) {
    return builtDirectory().filePath("Resources/" + resource);
}

void InstalledCopy::replace(const QString& resource, const QString& file) {
    QFile::remove(installed(resource));
    if (!QFile::link(file, installed(resource)))
        throw std::runtime_error("another program can't be put there");
}

} // namespace talvera::test
