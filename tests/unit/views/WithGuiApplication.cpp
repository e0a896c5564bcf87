// SPDX-License-Identifier: MIT
#include "QtApplication.h"
#include "views/ViewEngine.h"

#include <QGuiApplication>

namespace {

QtMessageHandler printElsewhere = nullptr;

/// What QML complains of, such as a binding loop, is a mistake in a view.
void failOnComplaints(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtWarningMsg && message.startsWith(QLatin1String("qrc:/qt/qml")))
        ADD_FAILURE() << qPrintable(message);
    printElsewhere(type, context, message);
}

/// Views need an application, and none of these tests a screen.
void prepare() {
    printElsewhere = qInstallMessageHandler(failOnComplaints);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    talvera::ViewEngine::prepareProcess();
}

void tidyUp() {
    qInstallMessageHandler(nullptr);
}

[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QGuiApplication>(prepare, tidyUp));

} // namespace
