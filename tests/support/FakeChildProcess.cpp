// SPDX-License-Identifier: MIT
#include "FakeChildProcess.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace talvera::test {

namespace {

constexpr qint64 wavHeaderBytes = 44;
constexpr double wavBytesPerSecond = 32000.0;

std::optional<QString> valueOf(const QStringList& arguments, const QString& option) {
    const auto index = arguments.indexOf(option);
    return index < 0 || index + 1 >= arguments.size() ? std::nullopt : std::optional(arguments[index + 1]);
}

QString wavOf(const ChildProcessRequest& request) {
    return valueOf(request.arguments, QStringLiteral("-f")).value_or(QString());
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
    knowsHowToWait = other.knowsHowToWait;
    hears = other.hears;
}

const ToolRun* FakeChildProcess::runFor(const QString& textFile) const {
    const auto found = m_runFor.find(textFile);
    return found == m_runFor.end() ? nullptr : &found->second;
}

/// A run that waits, or that has come to nothing. It may outlive the tool that it is of, as a task that never
/// ends does.
class FakeChildProcess::Prepared final : public PreparedChild {
public:
    Prepared(FakeChildProcess& tool, ChildProcessRequest request)
        : m_tool(tool)
        , m_request(std::move(request))
        , m_directory(tool.m_files.stamp(m_request.workingDirectory))
        , m_runs(tool.m_preparedRuns)
        , m_kills(m_runs->kills)
        , m_hasEnded(!tool.knowsHowToWait || m_request.memory > tool.freeMemory) {
        if (!m_hasEnded)
            m_runs->most = std::max(m_runs->most, ++m_runs->now);
    }
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;
    ~Prepared() override { end(); }

    std::optional<ChildProcessResult> finish(const QByteArray& input) override {
        if (!isReady() || m_tool.nextRun().launchFailure) {
            end();
            return std::nullopt;
        }
        const Input given{input, m_directory, m_hasEnded};
        m_isAtWork = true;
        auto result = m_tool.run(m_request, &given);
        m_isAtWork = false;
        const bool wasEnded = m_hasEnded;
        end();
        return wasEnded ? std::nullopt : std::optional(result);
    }
    void end() override {
        if (std::exchange(m_hasEnded, true))
            return;
        --m_runs->now;
        if (m_isAtWork)
            std::erase(m_runs->underWay, wavOf(m_request));
    }
    bool isReady() const override { return !m_hasEnded && m_runs->kills == m_kills; }

private:
    FakeChildProcess& m_tool;
    const ChildProcessRequest m_request;
    const std::optional<FileStamp> m_directory;
    const std::shared_ptr<PreparedRuns> m_runs;
    const int m_kills;
    bool m_hasEnded;
    bool m_isAtWork = false;
};

std::unique_ptr<PreparedChild> FakeChildProcess::prepare(const ChildProcessRequest& request) {
    auto prepared = std::make_unique<Prepared>(*this, request);
    if (prepared->isReady())
        m_preparedRequests.push_back(request);
    return prepared;
}

ChildProcessResult FakeChildProcess::run(const ChildProcessRequest& request) {
    return run(request, nullptr);
}

/// Over the recording of the file, or over the input that came later.
ChildProcessResult FakeChildProcess::run(const ChildProcessRequest& request, const Input* input) {
    const auto wav = wavOf(request);
    const auto wavBytes = input != nullptr ? input->recording.size() : m_files.size(wav);
    auto tool = decoded(request, wavBytes);
    tool.wasPrepared = input != nullptr;
    const bool isWarmup = tool.wav.contains(QStringLiteral("/talvera-warmup-"));
    auto script = isWarmup ? warmup : nextRun();
    if (!isWarmup) {
        ++m_next;
        m_lastRun = script;
    }
    const auto textFile = textFileOf(tool);
    m_runFor[textFile] = script;
    if (script.launchFailure)
        throw *script.launchFailure;
    const auto directory = input != nullptr ? input->directory : m_files.stamp(request.workingDirectory);
    m_requests.push_back(tool);
    if (m_onRun)
        m_onRun(tool);
    m_preparedRuns->underWay.push_back(tool.wav);
    m_mainActor.blockFor(script.duration);
    if (input != nullptr && input->wasEnded)
        return {SIGKILL, true, false, {}};
    std::erase(m_preparedRuns->underWay, tool.wav);
    if (script.status != 0)
        return {script.status, script.signalled, script.hung, script.standardError,
                script.standardOutput.value_or(QByteArray())};
    if (!wavBytes)
        return {2, false, false, "error: input file not found '" + tool.wav.toUtf8() + "'\n"};
    const bool hasHeard = *wavBytes > wavHeaderBytes && !script.leavesNoFile;
    if (hears && hasHeard)
        script.text = hears(tool, input != nullptr ? input->recording : m_files.read(tool.wav));
    // It has the right to leave a file in the directory of its beginning, and in no other of that path.
    if (hasHeard && directory && m_files.stamp(request.workingDirectory) == directory)
        leaveText(textFile, script);
    const auto printed = hasHeard ? '\n' + script.text : QByteArray();
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

ToolRequest FakeChildProcess::decoded(const ChildProcessRequest& request, std::optional<qint64> bytes) {
    ToolRequest tool;
    tool.process = request;
    tool.wav = wavOf(request);
    tool.language = valueOf(request.arguments, QStringLiteral("-l")).value_or(QString());
    tool.translates = request.arguments.contains(QStringLiteral("--translate"));
    tool.prompt = valueOf(request.arguments, QStringLiteral("--prompt"));
    const auto sound = std::max<qint64>(bytes.value_or(wavHeaderBytes) - wavHeaderBytes, 0);
    tool.audioSeconds = static_cast<double>(sound) / wavBytesPerSecond;
    return tool;
}

} // namespace talvera::test
