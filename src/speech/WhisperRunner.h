// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/ChildProcess.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "speech/PreparedRun.h"
#include "speech/WhisperError.h"
#include "speech/WhisperMode.h"

#include <QString>

#include <memory>
#include <optional>

namespace talvera {

/// Turns one WAV file into one finished transcript, by one run of the recognition tool. The text file that
/// the tool leaves is what counts; what it has printed stands in only where a full disk has cut that file. It
/// keeps no state: one runner serves any number of runs, on any thread, also at the same time for different
/// files.
class WhisperRunner {
public:
    /// The tool runs in `temporaryDirectory`, which must be private: it loads plug-ins from where it runs.
    WhisperRunner(ChildProcess& processes, FileSystem& files, QString temporaryDirectory, QString binaryURL,
                  QString modelURL);

    /// The runner of the tool that was installed with the program.
    static WhisperRunner makeDefault(ChildProcess& processes, FileSystem& files,
                                     const Directories& directories, const QString& modelURL);

    /// Blocks until the tool has ended; the text may be empty. `language` is a code as the tool takes it,
    /// "auto" or empty. An absent `prompt` stands for the default of the language. The WAV stays where it is.
    /// Throws WhisperError, or PlatformError when the tool could not be started.
    QString transcribe(const QString& wav, WhisperMode mode, const QString& language,
                       const std::optional<QString>& prompt = std::nullopt) const;

    /// The same, by a run that was prepared if that is the one that it takes; else that is ended. A prepared
    /// run whose tool has come to nothing before it had read the recording counts as none.
    QString transcribe(const QString& wav, WhisperMode mode, const QString& language,
                       const std::optional<QString>& prompt, PreparedRun* prepared) const;

    /// The same by the prepared run alone, of a recording whose file need not be there; nothing where
    /// transcribe() would begin another run.
    std::optional<QString> transcribeAhead(const QByteArray& recording, const QString& wav, WhisperMode mode,
                                           const QString& language, const std::optional<QString>& prompt,
                                           PreparedRun& prepared) const;

    /// Begins the run of a recording that is yet to come, which will last for `seconds`. Null without tool or
    /// model. It comes to nothing with a tool that doesn't know how to wait, and where memory is short.
    /// Returns at once.
    std::unique_ptr<PreparedRun> prepare(const QString& wav, double seconds, WhisperMode mode,
                                         const QString& language, const std::optional<QString>& prompt) const;

    /// The same runner for what nobody waits for: its runs give way to everything else on the machine.
    WhisperRunner atLowPriority() const;

    /// Their paths.
    const QString& binaryURL() const { return m_binaryURL; }
    const QString& modelURL() const { return m_modelURL; }

private:
    RunFiles filesNow() const;
    ChildProcessRequest request(const QString& wav, std::optional<double> seconds, WhisperMode mode,
                                const QString& language, const std::optional<QString>& prompt) const;
    std::optional<ChildProcessResult> finish(PreparedRun& prepared, const ChildProcessRequest& request,
                                             const QString& wav) const;
    QString textOf(ChildProcessResult result, const QString& path, bool wasThere) const;
    QByteArray takeOutput(const QString& path) const;

    ChildProcess& m_processes;
    FileSystem& m_files;
    QString m_temporaryDirectory;
    QString m_binaryURL;
    QString m_modelURL;
    ChildProcessRequest::Priority m_priority = ChildProcessRequest::Priority::Normal;
};

} // namespace talvera
