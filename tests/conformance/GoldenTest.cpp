// SPDX-License-Identifier: MIT
#include "GoldenScript.h"

#include <QProcess>

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

using namespace talvera::conformance;

namespace {

QByteArray answersTo(const QByteArray& requests, int& status) {
    QProcess driver;
    driver.start(QStringLiteral(TALVERA_CONFORMANCE), {});
    driver.write(requests);
    driver.closeWriteChannel();
    status = driver.waitForFinished() && driver.exitStatus() == QProcess::NormalExit ? driver.exitCode() : -1;
    return driver.readAllStandardOutput();
}

class GoldenScript : public testing::TestWithParam<std::string> {};

TEST_P(GoldenScript, isAnsweredLineByLine) {
    const auto exchanges = goldenScript(GetParam());
    ASSERT_FALSE(exchanges.empty());
    QByteArray requests;
    for (const auto& exchange : exchanges)
        requests += QByteArray::fromStdString(exchange.request) + '\n';

    int status = -1;
    const auto lines = answersTo(requests, status).split('\n');
    EXPECT_EQ(status, 0);
    ASSERT_EQ(static_cast<size_t>(lines.size()),
              exchanges.size() + 1); // the last line feed ends the last line
    for (size_t i = 0; i < exchanges.size(); ++i) {
        const auto& [request, answer, line] = exchanges[i];
        EXPECT_EQ(nlohmann::json::parse(lines[static_cast<qsizetype>(i)].toStdString()),
                  nlohmann::json::parse(answer))
            << GetParam() << ", line " << line << ": " << request;
    }
}

INSTANTIATE_TEST_SUITE_P(Areas, GoldenScript, testing::ValuesIn(goldenScriptNames()),
                         [](const auto& script) { return script.param.substr(0, script.param.find('.')); });

TEST(ConformanceDriver, lineWithoutALineFeedAtItsEnd_isAnsweredToo) {
    int status = -1;
    EXPECT_EQ(answersTo(R"({"op":"startSound","name":"Ping"})", status), "{\"name\":\"Ping\"}\n");
    EXPECT_EQ(status, 0);
}

TEST(ConformanceDriver, noInputAtAll_endsWithStatus0) {
    int status = -1;
    EXPECT_EQ(answersTo({}, status), "");
    EXPECT_EQ(status, 0);
}

TEST(ConformanceDriver, answer_comesBeforeTheNextRequest) {
    QProcess driver;
    driver.start(QStringLiteral(TALVERA_CONFORMANCE), {});
    for (const auto* name : {"Ping", "Pop"}) {
        driver.write(QByteArray(R"({"op":"startSound","name":")") + name + "\"}\n");
        QByteArray answer;
        while (!answer.endsWith('\n')) {
            ASSERT_TRUE(driver.waitForReadyRead());
            answer += driver.readAllStandardOutput();
        }
        EXPECT_EQ(answer, QByteArray(R"({"name":")") + name + "\"}\n");
    }
    driver.closeWriteChannel();
    EXPECT_TRUE(driver.waitForFinished());
}

} // namespace
