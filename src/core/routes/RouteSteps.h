// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Task.h"
#include "core/Trace.h"
#include "core/routes/Dictation.h"
#include "delivery/TextInserter.h"
#include "shell/hud/DictationHUDState.h"
#include "speech/WhisperMode.h"

#include <QString>

#include <exception>
#include <memory>
#include <optional>

namespace talvera {

class AppSettings;
class ChunkedTranscription;
class DictationHUDController;
class FileSystem;
class LanguageModel;
class LanguageRecognizer;
class MainActor;
class MenuBarController;
class PartStream;
class ReadinessMonitor;
class StatsStore;
class WhisperRunner;

/// The steps that the routes are made of, and the ends that they come to. Keeps nothing between dictations.
/// Main thread only.
class RouteSteps {
public:
    /// What the steps work with; all of it outlives them.
    struct Parts {
        MainActor& actor;
        FileSystem& files;
        LanguageModel& languageModel;
        LanguageRecognizer& languageRecognizer;
        WhisperRunner& whisper;
        ChunkedTranscription& transcription;
        TextInserter& inserter;
        AppSettings& settings;
        StatsStore& stats;
        MenuBarController& menuBar;
        DictationHUDController& hud;
        ReadinessMonitor& readiness;
        Trace trace;
    };

    explicit RouteSteps(Parts parts);

    /// One pass of the recogniser; nothing when it failed, by which the dictation has ended.
    Task<std::optional<QString>> recognise(const DictationRequest& request, WhisperMode mode,
                                           const char* failureText) const;

    /// Asks the language model.
    std::unique_ptr<PartStream> askModel(const QString& instructions, const QString& input) const;

    void updateHUD(const DictationHUDState& state) const;
    void showNotice(const QString& text, DictationHUDState::NoticeTone tone) const;

    /// Counts the dictation, by the text that the recogniser gave.
    void record(const QString& text, const DictationRequest& request, bool translates, bool cleansUp,
                const QString& backend) const;

    /// Delivers a whole text, or begins one that comes in parts.
    void deliver(const Dictation& dictation, const QString& text) const;
    TextInserter::Stream deliverInParts(const Dictation& dictation) const;

    /// The normal end of a route. A notice that delivery has just shown stays for its time.
    void finishDictation(const QString& wav) const;
    /// The end of a route that has shown a notice of its own.
    void finishBesideNotice(const QString& wav) const;

    /// What stands behind the language model at this moment, as the trace and the statistics name it.
    QString backendName() const;

    const Parts& parts() const { return m_parts; }
    void trace(const QString& line) const { m_parts.trace(line); }

private:
    void failRecognition(const QString& wav, const char* traceText, const std::exception& error) const;

    const Parts m_parts;
};

/// How many characters `text` has, for the trace.
QString countForTrace(const QString& text);

} // namespace talvera
