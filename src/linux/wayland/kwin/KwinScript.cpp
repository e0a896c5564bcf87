// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinScript.h"

#include "linux/wayland/kwin/callOfKwin.h"

#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QTemporaryFile>

#include <memory>
#include <utility>

namespace talvera {

namespace {

/// Nobody waits for it.
constexpr int patienceMs = 10'000;

QDBusMessage scriptingCall(const QString& method, const QVariantList& arguments) {
    return callOfKwin(QStringLiteral("/Scripting"), QStringLiteral("org.kde.kwin.Scripting"), method,
                      arguments);
}

QStringList namesLike(const QString& name) {
    constexpr int most = 8;
    QStringList names;
    for (int i = 1; i <= most; ++i)
        names << QStringLiteral("%1-%2").arg(name).arg(i);
    return names;
}

QString runtimeDirectory() {
    const auto directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return directory.isEmpty() ? QDir::tempPath() : directory;
}

/// A file that is there until the last who needs it has gone.
std::shared_ptr<QTemporaryFile> fileWith(const QByteArray& text) {
    auto file = std::make_shared<QTemporaryFile>(runtimeDirectory() + QStringLiteral("/talvera-XXXXXX.js"));
    if (!file->open() || file->write(text) != text.size() || !file->flush())
        return nullptr;
    return file;
}

} // namespace

KwinScript::KwinScript(QDBusConnection bus, const QString& name, QObject* parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_names(namesLike(name)) {}

KwinScript::~KwinScript() {
    unload();
}

void KwinScript::run(const QByteArray& text, const std::function<bool()>& hasRun) {
    load(text, hasRun, m_names);
}

void KwinScript::unload() {
    for (const auto& name : m_names)
        m_bus.send(scriptingCall(QStringLiteral("unloadScript"), {name}));
}

/// KWin numbers its scripts by how many there are. When another has been unloaded, ours gets a number that is
/// in use, and what is run is not ours: then nothing has been told, and the next one gets a number of its
/// own. The file is read when the script is run, and not when it is loaded.
void KwinScript::load(const QByteArray& text, const std::function<bool()>& hasRun, QStringList names) {
    const auto file = fileWith(text);
    if (!file || names.isEmpty())
        return;
    const auto name = names.takeFirst();
    auto* const loading = new QDBusPendingCallWatcher(
        m_bus.asyncCall(scriptingCall(QStringLiteral("loadScript"), {file->fileName(), name}), patienceMs),
        this);
    connect(loading, &QDBusPendingCallWatcher::finished, this, [this, loading, text, hasRun, file, names] {
        loading->deleteLater();
        const auto answer = loading->reply().arguments();
        if (loading->isError() || answer.isEmpty())
            return;
        const int number = answer.constFirst().toInt();
        if (number < 0) { // what had this name hasn't quite gone
            load(text, hasRun, names);
            return;
        }
        const auto pending = std::make_shared<int>(2);
        for (const auto* path : {"/%1", "/Scripting/Script%1"}) { // of version 5 and of 6
            const auto start = callOfKwin(QString::fromLatin1(path).arg(number),
                                          QStringLiteral("org.kde.kwin.Script"), QStringLiteral("run"), {});
            auto* const running = new QDBusPendingCallWatcher(m_bus.asyncCall(start, patienceMs), this);
            connect(running, &QDBusPendingCallWatcher::finished, this,
                    [this, running, pending, text, hasRun, file, names] {
                        running->deleteLater();
                        if (--*pending == 0 && !hasRun())
                            load(text, hasRun, names);
                    });
        }
    });
}

} // namespace talvera
