// SPDX-License-Identifier: MIT
#include "views/ViewEngine.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

class GuiApplication : public testing::Environment {
public:
    void SetUp() override {
        talvera::ViewEngine::prepareProcess();
        m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override { m_application.reset(); }

private:
    int m_argumentCount = 1;
    char m_name[4] = "hud";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
};

// Owned by the test framework.
[[maybe_unused]] const auto* const environment = testing::AddGlobalTestEnvironment(new GuiApplication);

} // namespace
