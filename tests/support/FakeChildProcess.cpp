// SPDX-License-Identifier: MIT
#include "FakeChildProcess.h"

#include <algorithm>

namespace talvera::test {

namespace {

constexpr qint64 wavHeaderBytes = 44;
constexpr double wavBytesPerSecond = 32000.0;

std::optional<QString> valueOf(const QStringList& arguments, const QString& option) {
    const auto index = arguments.indexOf(option);
    return index < 0 || index + 1 >= arguments.size() ? std::nullopt : std::optional(arguments[index + 1]);
}

QString textFileOf(const ToolRequest& request) {
    return valueOf(request.process.arguments, QStringLiteral("-of")).value_or(request.wav) +
           QStringLiteral(".txt");
}

} // namespace

void FakeChildProcess::setRuns(std::vector<ToolRun> runs) {
    m_runs = std::move(runs);
    m_next = 0;
}

void FakeChildProcess::become(const FakeChildProcess& other) {
    m_runs = other.m_runs;
    m_next = other.m_next;
}

const ToolRun* FakeChildProcess::runFor(const QString& textFile) const {
    const auto found = m_runFor.find(textFile);
    return found == m_runFor.end() ? nullptr : &found->second;
}

ChildProcessResult FakeChildProcess::run(const ChildProcessRequest& request) {
    const auto tool = decoded(request);
    const bool isWarmup = tool.wav.contains(QStringLiteral("/talvera-warmup-"));
    const auto script = isWarmup ? warmup : m_runs.at(std::min(m_next, m_runs.size() - 1));
    if (!isWarmup) {
        ++m_next;
        m_lastRun = script;
    }
    const auto textFile = textFileOf(tool);
    m_runFor[textFile] = script;
    if (script.launchFailure)
        throw *script.launchFailure;
    m_requests.push_back(tool);
    if (m_onRun)
        m_onRun(tool);
    m_underWay.push_back(tool.wav);
    m_mainActor.blockFor(script.duration);
    std::erase(m_underWay, tool.wav);
    if (script.status != 0)
        return {script.status, script.signalled, script.hung, script.standardError,
                script.standardOutput.value_or(QByteArray())};
    const auto wavBytes = m_files.size(tool.wav);
    if (!wavBytes)
        return {2, false, false, "error: input file not found '" + tool.wav.toUtf8() + "'\n"};
    const bool hears = *wavBytes > wavHeaderBytes && !script.leavesNoFile;
    if (hears)
        leaveText(textFile, script);
    const auto printed = hears ? '\n' + script.text : QByteArray();
    return {0, false, false, script.standardError, script.standardOutput.value_or(printed)};
}

void FakeChildProcess::leaveText(const QString& path, const ToolRun& script) {
    try {
        m_files.write(path, script.text.left(script.diskEndsAt.value_or(script.text.size())));
    } catch (const PlatformError&) {
        try {
            m_files.write(path, {}); // the tool doesn't look at errors of its writes
        } catch (const PlatformError&) {
            // No directory: no file, and still it ends well.
        }
    }
}

ToolRequest FakeChildProcess::decoded(const ChildProcessRequest& request) const {
    ToolRequest tool;
    tool.process = request;
    tool.wav = valueOf(request.arguments, QStringLiteral("-f")).value_or(QString());
    tool.language = valueOf(request.arguments, QStringLiteral("-l")).value_or(QString());
    tool.translates = request.arguments.contains(QStringLiteral("--translate"));
    tool.prompt = valueOf(request.arguments, QStringLiteral("--prompt"));
    const auto bytes = m_files.size(tool.wav).value_or(wavHeaderBytes);
    tool.audioSeconds = static_cast<double>(std::max<qint64>(bytes - wavHeaderBytes, 0)) / wavBytesPerSecond;
    return tool;
}

} // namespace talvera::test
