// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/system/ChildProcess.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PlatformError.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace talvera::test {

/// One run of the stand-in for the recognition tool.
struct ToolRun {
    QByteArray text{};                           ///< what it leaves in its text file
    Duration duration = std::chrono::seconds(1); ///< how long it takes
    int status = 0;                              ///< other than 0: it leaves no file
    QByteArray standardError{};
    bool signalled = false;
    bool hung = false;
    bool leavesNoFile = false;                    ///< ends well, but without a text file
    std::optional<qsizetype> diskEndsAt{};        ///< so many bytes of the text get into the file
    std::optional<QByteArray> standardOutput{};   ///< what it prints; as a rule its text
    std::optional<PlatformError> launchFailure{}; ///< can't be started at all
};

/// What one run was asked for.
struct ToolRequest {
    ChildProcessRequest process;
    QString wav;
    QString language;
    bool translates = false;
    std::optional<QString> prompt;
    double audioSeconds = 0; ///< by the size of the WAV; 0 when it is missing
    bool wasPrepared = false;
};

/// A recognition tool that answers from a script, over the same file system as the program: a missing WAV
/// ends it with status 2, one without samples makes it leave no file, and on a full disk its text file is
/// empty. It prints the text, too. It knows how to wait for its recording. Runs take time on the main actor's
/// clock, so that a simulated background job lasts as long as the tool.
class FakeChildProcess final : public ChildProcess {
public:
    FakeChildProcess(MainActor& mainActor, FileSystem& files)
        : m_mainActor(mainActor)
        , m_files(files) {}

    /// The runs in order; the last one repeats.
    void setRuns(std::vector<ToolRun> runs);

    /// Goes on with the runs that the other one has not come to, and hears as it does.
    void become(const FakeChildProcess& other);

    /// What a run for the program's own warm-up does, which takes none of the others' turns: as a rule it is
    /// over at once.
    ToolRun warmup{.duration = Duration::zero()};

    /// Called as a run begins.
    void setOnRun(std::function<void(const ToolRequest&)> onRun) { m_onRun = std::move(onRun); }

    /// What the tool hears, in place of the text of its script, if set: it knows the whole WAV file.
    std::function<QByteArray(const ToolRequest&, const QByteArray& recording)> hears;

    ChildProcessResult run(const ChildProcessRequest& request) override;
    std::unique_ptr<PreparedChild> prepare(const ChildProcessRequest& request) override;

    bool knowsHowToWait = true;
    /// Where less memory is free than a run asks for, it isn't begun ahead.
    qint64 freeMemory = std::numeric_limits<qint64>::max();
    /// The runs that wait for their recording or work on it; and the most that there were at once.
    int prepared() const { return m_preparedRuns->now; }
    int mostPrepared() const { return m_preparedRuns->most; }
    /// Of those that were begun so far, what they were asked for.
    const std::vector<ChildProcessRequest>& preparedRequests() const { return m_preparedRequests; }
    /// Those that wait come to nothing.
    void killPrepared() { ++m_preparedRuns->kills; }

    /// What has been asked for so far; forgetting it is for tests that go on for long.
    const std::vector<ToolRequest>& requests() const { return m_requests; }
    void forgetRequests() {
        m_requests.clear();
        m_preparedRequests.clear();
    }

    /// The run that began last; null before the first.
    const ToolRun* lastRun() const { return m_lastRun ? &*m_lastRun : nullptr; }

    /// The last run that was to write to this text file, whether or not it did; null if none was.
    const ToolRun* runFor(const QString& textFile) const;

    /// The recordings that are being recognised.
    const std::vector<QString>& underWay() const { return m_preparedRuns->underWay; }

private:
    class Prepared;
    struct PreparedRuns {
        int now = 0;
        int most = 0;
        int kills = 0;
        std::vector<QString> underWay; ///< the recordings, also of those that weren't prepared
    };

    const ToolRun& nextRun() const { return m_runs.at(std::min(m_next, m_runs.size() - 1)); }
    struct Input {
        QByteArray recording;
        std::optional<FileStamp> directory; ///< in which the run has begun
        const bool& wasEnded;               ///< by who prepared it
    };

    ChildProcessResult run(const ChildProcessRequest& request, const Input* input);
    static ToolRequest decoded(const ChildProcessRequest& request, std::optional<qint64> bytes);
    void leaveText(const QString& path, const ToolRun& script);

    MainActor& m_mainActor;
    FileSystem& m_files;
    std::vector<ToolRun> m_runs{ToolRun{}};
    std::size_t m_next = 0;
    std::vector<ToolRequest> m_requests;
    std::function<void(const ToolRequest&)> m_onRun;
    std::optional<ToolRun> m_lastRun;
    std::map<QString, ToolRun> m_runFor;
    std::shared_ptr<PreparedRuns> m_preparedRuns = std::make_shared<PreparedRuns>();
    std::vector<ChildProcessRequest> m_preparedRequests;
};

} // namespace talvera::test
