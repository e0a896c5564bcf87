// SPDX-License-Identifier: MIT
#include "Judge.h"

#include "language/TargetLanguage.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

// What the recogniser is asked, and what it leaves.

namespace talvera::simulation {

using test::Effect;

namespace {

std::optional<QString> utf8(const QByteArray& bytes) {
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    return decode.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

/// What the settings and the machine of this moment ask for.
Judge::Way Judge::way() const {
    const auto& settings = m_world->settings;
    const auto target = TargetLanguage::byCode(settings.targetLanguageCode.get());
    const auto source = settings.sourceLanguageCode.get();
    const auto english = QStringLiteral("en");
    const auto& model = m_world->languageModel;
    if (target.requiresAI && model.reason)
        return Way::ForWantOfAI;
    if (target.requiresAI)
        return source == QStringLiteral("auto") || model.languages.contains(source) ? Way::ByModel
                                                                                    : Way::InTwoHops;
    const bool cleansUp =
        settings.aiCleanupEnabled.get() && !model.reason && settings.cleanupTone.get() != CleanupTone::Off;
    if (target.code != english || source == english)
        return cleansUp ? Way::CleanUp : Way::Plain;
    if (!cleansUp)
        return Way::Direct;
    return source == QStringLiteral("auto") && m_world->languageRecognizer.answer == english
               ? Way::CleanUp
               : Way::SecondPass;
}

/// Whether what was heard while the user spoke is what the pass after the release would hear.
bool Judge::fits(const Heard& heard) const {
    return heard.run.language == m_inFlight->source &&
           heard.run.translates == (m_inFlight->way == Way::Direct) && !m_wasModelReplaced;
}

/// The recording that it is of comes to nothing.
void Judge::forgetWhatIsAhead() {
    if (!m_ahead.empty())
        m_faults.note(Fault::AheadInVain);
    m_ahead.clear();
    m_run.reset();
}

QStringList Judge::InFlight::texts(bool translated) const {
    QStringList texts;
    for (const auto& each : heard) {
        if (each.run.translates == translated)
            texts << each.text;
    }
    return texts;
}

void Judge::seeRun(const Effect& effect) {
    const auto& requests = m_world->tool.requests();
    const Run run{requests.empty() ? QString() : requests.back().wav,
                  QString::fromStdString(effect.fields["language"].get<std::string>()),
                  effect.fields["mode"] == "translateToEnglish", !m_inFlight};
    if (!isRunDue(run)) {
        complain(QStringLiteral("the recogniser ran without a dictation"));
        return;
    }
    const auto& others = m_world->tool.underWay();
    if (std::any_of(others.begin(), others.end(), test::isOfADictation))
        complain(QStringLiteral("two runs of the recogniser at once"));
    judgeRun(run, m_inFlight ? m_inFlight->way : m_wayAhead, m_inFlight ? m_inFlight->source : m_sourceAhead);
    noteRun();
    if (m_inFlight) {
        auto& flight = *m_inFlight;
        if (m_run && !m_run->isAhead)
            flight.toolFailed = true; // the one before left nothing to read, and this one should not be
        if (!run.wav.contains(QStringLiteral("-chunk"))) // parts are no matter
            std::erase_if(flight.heard,
                          [&](const Heard& heard) { return heard.run.translates == run.translates; });
        flight.lastRunTranslates = run.translates;
    }
    m_run = run;
}

/// While the user still speaks, only parts of what has been said are recognised, by a run that was prepared.
bool Judge::isRunDue(const Run& run) const {
    if (m_inFlight)
        return true;
    return m_menu == "recording" && run.wav.contains(QStringLiteral("-chunk")) &&
           m_world->tool.requests().back().wasPrepared;
}

void Judge::judgeRun(const Run& run, Way way, const QString& source) {
    const bool isSecond =
        way == Way::SecondPass || way == Way::ForWantOfAI || (m_inFlight && m_inFlight->goesByTwoHops());
    const bool hasFirst = m_inFlight && !joinedTexts(m_inFlight->texts(false)).isEmpty();
    if (run.translates && way != Way::Direct && !(isSecond && hasFirst))
        complain(QStringLiteral("a translation that nobody asked for"));
    if (!run.translates && (way == Way::Direct || (m_inFlight && m_inFlight->lastRunTranslates)))
        complain(QStringLiteral("a transcription where a translation was due"));
    if (run.language != source)
        complain(QStringLiteral("recognised as %1 instead of %2").arg(run.language, source));
}

/// What goes wrong with the run that begins.
void Judge::noteRun() {
    const auto* run = m_world->tool.lastRun();
    if (!run)
        return;
    if (run->status != 0 && !m_inFlight)
        m_faults.note(Fault::AheadFailed);
    if (run->status != 0)
        m_faults.note(Fault::ToolFailed);
    else if (run->leavesNoFile || run->text.startsWith('\xC3'))
        m_faults.note(Fault::ToolLeftNoText);
    else if (run->diskEndsAt)
        m_faults.note(*run->diskEndsAt == 0 ? Fault::ToolLeftEmptyFile : Fault::ToolLeftCutFile);
}

void Judge::seeText(const QByteArray& bytes, const QString& path) {
    if (!path.endsWith(QStringLiteral(".txt")))
        return;
    // A disk that has cut the file costs no word: the tool has printed them.
    const auto* run = m_world->tool.runFor(path);
    const auto said = run && !run->leavesNoFile ? run->text : QByteArray();
    const auto text = utf8(said.startsWith(bytes) ? said : bytes);
    if (!text)
        m_expectedLeaks.insert(path); // it stays where the tool has put it
    if (!m_run || !test::isOfADictation(path))
        return;
    const bool isOfEarlierRun = run && run->leavesNoFile && !bytes.trimmed().isEmpty();
    if (!text || isOfEarlierRun) {
        if (m_run->isAhead)
            m_run.reset(); // the pass after the release will try again
        else
            m_inFlight->toolFailed = true;
        return;
    }
    const Heard heard{path, *std::exchange(m_run, std::nullopt), *text};
    if (m_inFlight && heard.run.isAhead && !fits(heard))
        return;
    auto& all = m_inFlight ? m_inFlight->heard : m_ahead;
    const auto before = std::find_if(all.begin(), all.end(), [&](const Heard& other) {
        return other.file == heard.file && other.run.translates == heard.run.translates;
    });
    if (before != all.end())
        *before = heard;
    else
        all.push_back(heard);
}

} // namespace talvera::simulation
