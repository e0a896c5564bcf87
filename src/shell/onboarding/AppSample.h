// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>

namespace talvera {

/// An application that the wizard shows a dictation in.
struct AppSample {
    Q_GADGET
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString sample MEMBER sample CONSTANT)
    Q_PROPERTY(bool mono MEMBER mono CONSTANT)

public:
    QString icon; ///< a symbol's name
    QString name;
    QString sample;    ///< what is dictated
    bool mono = false; ///< in letters of one width
};

/// In the order in which they are shown, in the words of the loaded catalogs; as a list for views.
QVariantList appSamples();

} // namespace talvera
