// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

#include <functional>
#include <optional>

class QObject;

namespace talvera {

/// Our connection to the session bus for the sake of GNOME Shell's extension, which takes back what it has
/// done for us when this connection ends. Any thread.
class ShellBus {
public:
    static const QString shellService;     ///< GNOME Shell's own name
    static const QString extensionService; ///< what our extension is called on the bus
    static const QString extensionPath;
    static const QString extensionInterface;

    /// The session's bus, or the one at `address`.
    explicit ShellBus(const QString& address = {});
    ShellBus(const ShellBus&) = delete;
    ShellBus& operator=(const ShellBus&) = delete;
    ~ShellBus();

    /// Whether GNOME Shell is there, or at least our extension's name.
    bool hasShell() const;

    /// The question to the bus whose answer is the owner of that name; an error where it has none.
    static QDBusMessage ownerOf(const QString& service);

    const QDBusConnection& connection() const { return m_connection; }

    /// Asks the extension and waits for its answer, two seconds at most. Not for the main thread.
    std::optional<QVariantList> ask(const QString& method, const QVariantList& arguments) const;

    /// Hands the answer to `done` in a later turn of the owner's thread, however late it comes; never if that
    /// has gone by then. Null stands for an error.
    void askLater(const QString& method, const QVariantList& arguments, QObject& owner,
                  std::function<void(const QVariantList* answer)> done) const;
    void askLater(const QDBusMessage& question, QObject& owner,
                  std::function<void(const QVariantList* answer)> done) const;

    void tell(const QString& method, const QVariantList& arguments) const;

private:
    const QString m_name;
    QDBusConnection m_connection;
};

} // namespace talvera
