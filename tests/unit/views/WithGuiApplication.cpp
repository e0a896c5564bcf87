// SPDX-License-Identifier: MIT
#include "views/ViewEngine.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// Views need an application, and none of these tests a screen.
class GuiApplication : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        talvera::ViewEngine::prepareProcess();
        m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
    }
    void TearDown() override { m_application.reset(); }

private:
    int m_argumentCount = 1;
    char m_name[6] = "views";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
};

const auto* const environment = testing::AddGlobalTestEnvironment(new GuiApplication);

} // namespace
