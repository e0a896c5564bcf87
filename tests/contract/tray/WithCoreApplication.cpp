// SPDX-License-Identifier: MIT
#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// Answers from the bus come through an event loop.
class CoreApplication : public testing::Environment {
public:
    void SetUp() override {
        m_application = std::make_unique<QCoreApplication>(m_argumentCount, m_arguments);
    }
    void TearDown() override { m_application.reset(); }

private:
    int m_argumentCount = 1;
    char m_name[5] = "tray";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QCoreApplication> m_application;
};

const auto* const environment = testing::AddGlobalTestEnvironment(new CoreApplication);

} // namespace
