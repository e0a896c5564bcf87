// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace talvera {

class FileSystem;

/// A program or library that ours is made with.
struct ThirdParty {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString licence MEMBER licence CONSTANT)

public:
    QString name;
    QString licence; ///< its short name
    QString file;    ///< where its texts stand
};

/// What the program is made with, and the texts of the licences of one of these, to be read. Main thread
/// only.
class ThirdPartyLicences final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle CONSTANT)
    Q_PROPERTY(QVariantList parties READ parties CONSTANT)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(int last READ last NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString licence READ licence NOTIFY changed)
    Q_PROPERTY(QStringList passages READ passages NOTIFY changed)
    Q_PROPERTY(QString backText READ backText CONSTANT)

public:
    /// All of it outlives the model.
    struct Parts {
        FileSystem& files;
        QString directory; ///< where the texts lie
    };

    explicit ThirdPartyLicences(const Parts& parts);

    QString title() const;
    QString subtitle() const;
    QString backText() const;
    /// Of ThirdParty.
    QVariantList parties() const;

    bool isOpen() const { return !m_passages.isEmpty(); }
    /// The row that is open or was so last, to come back to; -1 after forget().
    int last() const { return m_last; }
    /// Of what is open: what it is called, its licence in short, and its texts in passages of a few lines. A
    /// text that can't be read says where it should be.
    QString name() const;
    QString licence() const;
    QStringList passages() const { return m_passages; }

    Q_INVOKABLE void open(int row);
    Q_INVOKABLE void close();
    /// Closes it, and none was open last.
    void forget();

Q_SIGNALS:
    void changed();

private:
    QStringList passagesOf(const ThirdParty& party) const;

    const Parts m_parts;
    int m_last = -1;
    QStringList m_passages;
};

} // namespace talvera
