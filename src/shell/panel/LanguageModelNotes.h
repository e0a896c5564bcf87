// SPDX-License-Identifier: MIT
#pragma once

#include "language/AIAvailabilityState.h"

#include <QObject>
#include <QString>

namespace talvera {

/// What the panel says of the language model. A text is empty where there is nothing to say.
struct LanguageModelNotes {
    Q_GADGET
    Q_PROPERTY(QString remark MEMBER remark CONSTANT)
    Q_PROPERTY(bool isInUse MEMBER isInUse CONSTANT)
    Q_PROPERTY(QString cure MEMBER cure CONSTANT)
    Q_PROPERTY(QString footer MEMBER footer CONSTANT)
    Q_PROPERTY(QString footerHelp MEMBER footerHelp CONSTANT)
    Q_PROPERTY(bool footerIsWarning MEMBER footerIsWarning CONSTANT)
    Q_PROPERTY(bool footerActs MEMBER footerActs CONSTANT)

public:
    QString remark;               ///< below the switch of the clean-up
    bool isInUse = false;         ///< the remark says that all is well
    QString cure;                 ///< on the button to the model's settings
    QString footer;               ///< below the list of languages
    QString footerHelp;           ///< explains it
    bool footerIsWarning = false; ///< something can be mended
    bool footerActs = false;      ///< it can be clicked, and leads to the model's settings
};

/// Orange, and a button, are for what can be mended. On a computer without a language model one line says so.
LanguageModelNotes languageModelNotes(AIAvailabilityState state, bool cleanupEnabled);

} // namespace talvera
