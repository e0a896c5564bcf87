// SPDX-License-Identifier: MIT
#include "models/ModelSource.h"

namespace talvera {

ModelSource ModelSource::of(const QUrl& mainURL, const QUrl& encoderURL) {
    ModelSource source;
    source.main = {mainURL,
                   QStringLiteral("19fea4b380c3a618ec4723c3eef2eb785ffba0d0538cf43f8f235e7b3b34220f"),
                   539'212'467};
    if (!encoderURL.isEmpty()) {
        source.encoder = {encoderURL,
                          QStringLiteral("79b0b8d436d47d3f24dd3afc91f19447dd686a4f37521b2f6d9c30a642133fbd"),
                          314'572'800};
    }
    return source;
}

ModelSource ModelSource::configured() {
    return of(QUrl(QStringLiteral(TALVERA_MODEL_URL)), QUrl(QStringLiteral(TALVERA_ENCODER_URL)));
}

} // namespace talvera
