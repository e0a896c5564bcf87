// SPDX-License-Identifier: MIT
#include "app/ModelOffer.h"

#ifdef TALVERA_DIAGNOSTICS
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#endif

namespace talvera {

#ifdef TALVERA_DIAGNOSTICS

namespace {

ModelItem itemFrom(const QJsonObject& fields) {
    return {QUrl(fields.value(QStringLiteral("url")).toString()),
            fields.value(QStringLiteral("sha256")).toString(),
            fields.value(QStringLiteral("size")).toInteger()};
}

} // namespace

ModelOffer ModelOffer::ofThisBuild() {
    QFile file(qEnvironmentVariable("TALVERA_TEST_MODEL"));
    if (file.fileName().isEmpty())
        return {ModelSource::configured()};
    if (!file.open(QIODevice::ReadOnly))
        qFatal("$TALVERA_TEST_MODEL can't be read");
    const auto fields = QJsonDocument::fromJson(file.readAll()).object();
    return {{itemFrom(fields), itemFrom(fields.value(QStringLiteral("encoder")).toObject())},
            fields.value(QStringLiteral("trusted")).toString()};
}

#else

ModelOffer ModelOffer::ofThisBuild() {
    return {ModelSource::configured()};
}

#endif

} // namespace talvera
