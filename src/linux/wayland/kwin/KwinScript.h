// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace talvera {

/// Something that KWin runs for us, in itself, and keeps until this object has gone.
class KwinScript final : public QObject {
public:
    /// `name` is like no other's. Lives on the parent's thread.
    KwinScript(QDBusConnection bus, const QString& name, QObject* parent);
    ~KwinScript() override;

    /// What it may be called, that is to be unloaded when we die.
    QStringList names() const { return m_names; }

    /// Has KWin run this. Returns at once. `hasRun` answers whether the script has told of itself.
    void run(const QByteArray& text, const std::function<bool()>& hasRun);

    /// Has KWin forget it.
    void unload();

private:
    /// By the first of the names, or by the next ones.
    void load(const QByteArray& text, const std::function<bool()>& hasRun, QStringList names);

    QDBusConnection m_bus;
    const QStringList m_names;
};

} // namespace talvera
