// SPDX-License-Identifier: MIT
#include "views/ViewEngine.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

QtMessageHandler printElsewhere = nullptr;

/// What QML complains of, such as a binding loop, is a mistake in a view.
void failOnComplaints(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtWarningMsg && message.startsWith(QLatin1String("qrc:/qt/qml")))
        ADD_FAILURE() << qPrintable(message);
    printElsewhere(type, context, message);
}

/// Views need an application, and none of these tests a screen.
class GuiApplication : public testing::Environment {
public:
    void SetUp() override {
        printElsewhere = qInstallMessageHandler(failOnComplaints);
        qputenv("QT_QPA_PLATFORM", "offscreen");
        talvera::ViewEngine::prepareProcess();
        m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
    }
    void TearDown() override {
        m_application.reset();
        qInstallMessageHandler(nullptr);
    }

private:
    int m_argumentCount = 1;
    char m_name[6] = "views";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
};

const auto* const environment = testing::AddGlobalTestEnvironment(new GuiApplication);

} // namespace
