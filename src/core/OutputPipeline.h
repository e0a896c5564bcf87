// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Task.h"
#include "core/DictationRequest.h"
#include "core/Trace.h"
#include "delivery/FocusSnapshot.h"
#include "speech/WhisperMode.h"

#include <QString>

#include <exception>
#include <memory>
#include <optional>

namespace talvera {

class ChunkedTranscription;
class DictationHUDController;
class FileSystem;
class LanguageRecognizer;
class MainActor;
class MenuBarController;
class ReadinessMonitor;
class StatsStore;
class TextInserter;
class WhisperRunner;

/// The road from a finished recording to text at the cursor. Whatever happens on it, it ends with the
/// recording deleted and the menu bar's state out of transcribing. Main thread only; keeps nothing between
/// dictations.
class OutputPipeline : public std::enable_shared_from_this<OutputPipeline> {
public:
    /// One dictation on its way. `focusSnapshot` is what had the focus when the recording began.
    struct Dictation {
        DictationRequest request;
        std::optional<FocusSnapshot> focusSnapshot;
    };

    /// What the pipeline works with; all of it outlives the pipeline.
    struct Parts {
        MainActor& actor;
        FileSystem& files;
        LanguageRecognizer& languageRecognizer;
        WhisperRunner& whisper;
        ChunkedTranscription& transcription;
        TextInserter& inserter;
        StatsStore& stats;
        MenuBarController& menuBar;
        DictationHUDController& hud;
        ReadinessMonitor& readiness;
        Trace trace;
    };

    explicit OutputPipeline(Parts parts);

    /// Recognises the recording, counts the dictation, chooses its route and takes it to its end.
    Task<void> runPipeline(Dictation dictation);

private:
    Task<void> continueAfterTranscription(Dictation dictation, QString transcript);
    Task<void> runRoute(const Dictation& dictation, const QString& transcript);

    Task<void> translateDirect(const Dictation& dictation);
    void insertPlain(const Dictation& dictation, const QString& transcript);
    Task<void> translateInSecondPass(const Dictation& dictation, const QString& transcript);
    Task<void> fallBackToWhisper(const Dictation& dictation);

    /// The normal end of a route. A notice that delivery has just shown stays for its time.
    void finishDictation(const QString& wav);
    /// The end of a route whose recogniser failed.
    void failRecognition(const QString& wav, const char* traceText, const std::exception& error);
    void deleteRecording(const QString& wav);

    /// One pass of the recogniser; nothing when it failed, by which the dictation has ended.
    Task<std::optional<QString>> recognise(const DictationRequest& request, WhisperMode mode,
                                           const char* failureText);
    void deliver(const Dictation& dictation, const QString& text);
    QString polishBackend(const DictationRequest& request) const;
    void trace(const QString& line) const { m_parts.trace(line); }

    const Parts m_parts;
};

} // namespace talvera
