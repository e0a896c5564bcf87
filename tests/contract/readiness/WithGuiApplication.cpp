// SPDX-License-Identifier: MIT
// Gives a test program the application object that Qt wants for windows.
#include <QGuiApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

class QtApplication : public testing::Environment {
public:
    QtApplication() { ::testing::AddGlobalTestEnvironment(this); }
    void SetUp() override { m_application = std::make_unique<QGuiApplication>(m_argc, m_argv); }
    void TearDown() override { m_application.reset(); }

private:
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
};

// Owned by the test framework.
[[maybe_unused]] const auto* const application = new QtApplication;

} // namespace
