// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>

namespace talvera::test {

/// The application object that Qt wants for windows, buses and threads of its own. It is there while the
/// tests of a program run:
///
///     const auto* const environment =
///         testing::AddGlobalTestEnvironment(new QtApplication<QGuiApplication>);
template <typename Application>
class QtApplication final : public testing::Environment {
public:
    using Step = void (*)();

    /// `prepare` runs before there is an application, `tidyUp` when there is none any more.
    explicit QtApplication(Step prepare = nullptr, Step tidyUp = nullptr)
        : m_prepare(prepare)
        , m_tidyUp(tidyUp) {}

    void SetUp() override {
        if (m_prepare)
            m_prepare();
        m_application = std::make_unique<Application>(m_argumentCount, m_arguments);
    }
    void TearDown() override {
        m_application.reset();
        if (m_tidyUp)
            m_tidyUp();
    }

private:
    Step m_prepare;
    Step m_tidyUp;
    int m_argumentCount = 1; // Qt keeps referring to it
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<Application> m_application;
};

} // namespace talvera::test
