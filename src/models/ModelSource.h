// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace talvera {

/// One file to fetch.
struct ModelItem {
    QUrl url;                ///< empty: the model does without it
    QString sha256{};        ///< of what is fetched, 64 lower-case hex digits
    qint64 expectedSize = 0; ///< bytes, for the arithmetic of progress and room alone
};

/// What the speech model consists of, and where it is fetched: the main file, and with some recognisers the
/// archive of an encoder.
struct ModelSource {
    ModelItem main;
    ModelItem encoder{};

    bool hasEncoder() const { return !encoder.url.isEmpty(); }

    /// The items as they are published, fetched from these places.
    static ModelSource of(const QUrl& mainURL, const QUrl& encoderURL = {});

    /// From the places that this build was configured with.
    static ModelSource configured();
};

} // namespace talvera
