// SPDX-License-Identifier: MIT
#include "Judge.h"

#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "hotkeys/HotkeyManager.h"
#include "models/ModelStore.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace talvera::simulation {

using test::Effect;

namespace {

/// Waits that hold the main actor (a reactivation, a probe) can delay what is due meanwhile by this much.
constexpr double slack = 1.1;

} // namespace

Tally& Tally::operator+=(const Tally& other) {
    dictations += other.dictations;
    typed += other.typed;
    pasted += other.pasted;
    toClipboard += other.toClipboard;
    discarded += other.discarded;
    empty += other.empty;
    failed += other.failed;
    notSaved += other.notSaved;
    notStarted += other.notStarted;
    partsAhead += other.partsAhead;
    acceptedLeaks += other.acceptedLeaks;
    return *this;
}

Judge::Judge(FaultLog& faults)
    : m_faults(faults)
    , m_texts(faults, [this](const QString& what) { complain(what); }) {}

void Judge::watch(test::SimulatedWorld& world) {
    m_world = &world;
    m_texts.watch(world);
    world.onEffect = [this](const Effect& effect) { see(effect); };
    seeFiles();
}

void Judge::hear(const QString& words) {
    judgeWizard();
    judgeModel();
    if (words == QStringLiteral("the model is missing") && m_world->agent().models.isReady())
        m_modelGone = m_world->actor.now();
    // Later, what is under way comes to its end with the model that it has begun with.
    if (words == QStringLiteral("the model is replaced") && !m_inFlight)
        m_wasModelReplaced = true;
    if (words.startsWith(QStringLiteral("the hotkey comes up")))
        m_hotkeyUp = m_world->actor.now();
    if (words.contains(QStringLiteral("can't be started")))
        m_launchFailuresExcused = true;
    if (words == QStringLiteral("preferences can't be written"))
        m_preferencesWereRefused = true;
    if (words.startsWith(QStringLiteral("set hotkeyTapToToggle")))
        m_releasesExcused = true;
}

void Judge::seeFiles() {
    m_world->files.onRead = [this](const QString& path, const QByteArray& bytes) { seeText(bytes, path); };
    m_world->files.onRemovalFailed = [this](const QString& path) {
        m_faults.note(Fault::NothingDeleted);
        if (!path.startsWith(m_world->directories.applicationSupport))
            m_expectedLeaks.insert(path);
    };
    // A second pass over the same recording may still take away what the first one left.
    m_world->files.onRemoved = [this, tell = m_world->files.onRemoved](const QString& path) {
        m_expectedLeaks.erase(path);
        tell(path);
    };
    // A split that can't write a chunk leaves those that it has written.
    m_world->files.onWriteFailed = [this](const QString& path) {
        if (!path.contains(QStringLiteral("-chunk"))) {
            m_saveFailed = true;
            return;
        }
        for (const auto& chunk : m_world->chunkFiles())
            m_expectedLeaks.insert(chunk);
    };
}

void Judge::complain(const QString& what) {
    if (!m_violation)
        m_violation = QStringLiteral("at %1 s: %2").arg(m_world->actor.elapsed(), 0, 'f', 6).arg(what);
}

void Judge::see(const Effect& effect) {
    if (effect.effect == "menu")
        seeMenu(effect.fields["state"].get<std::string>());
    else if (effect.effect == "hud")
        seeHUD(effect);
    else if (effect.effect == "recorderStart")
        seeRecorderStart();
    else if (effect.effect == "recorderStop")
        seeRecorderStop(effect);
    else if (effect.effect == "recognise")
        seeRun(effect);
    else if (effect.effect == "request")
        seeRequest(effect);
    else if (effect.effect == "statistics")
        ++m_recordsWritten;
    else if (effect.effect == "activate")
        seeActivation();
    m_texts.see(effect);
}

void Judge::seeMenu(const std::string& state) {
    const auto from = std::exchange(m_menu, state);
    const double lasted = m_world->actor.elapsed() - std::exchange(m_menuSince, m_world->actor.elapsed());
    const bool legal = (state == "recording" && from == "idle") ||
                       (state == "transcribing" && from == "recording") ||
                       (state == "error" && isOneOf(from, {"idle", "recording", "transcribing"})) ||
                       (state == "idle" && isOneOf(from, {"recording", "transcribing", "error"}));
    if (!legal)
        complain(QStringLiteral("the menu went from %1 to %2")
                     .arg(QString::fromStdString(from), QString::fromStdString(state)));

    if (state == "recording") {
        m_snapshots.insert(snapshot());
        m_snapshot = *m_snapshots.begin();
        // Not before: the look for the focus may have held the main thread.
        m_wayAhead = way();
        m_sourceAhead = m_world->settings.sourceLanguageCode.get();
        m_wasModelReplaced = false;
    } else if (state == "transcribing") {
        begin();
    } else if (from == "transcribing") {
        judgeEnd(state == "error");
    } else if (from == "recording" && state == "idle") {
        ++m_tally.discarded;
        forgetWhatIsAhead();
        m_listeningMayStay = true;
    } else if (from == "recording" && state == "error") {
        ++m_tally.notSaved;
        forgetWhatIsAhead();
        m_faults.note(Fault::RecordingNotSaved);
        m_listeningMayStay = true;
        if (!std::exchange(m_saveFailed, false))
            complain(QStringLiteral("a recording was not saved though the disk took it"));
    } else if (from == "idle" && state == "error") {
        ++m_tally.notStarted;
        m_faults.note(Fault::MicrophoneRefused);
        m_noticeDue = QStringLiteral("Microphone unavailable");
        if (!m_world->microphone.startFailure)
            complain(QStringLiteral("a recording did not start though the recorder did"));
    } else if (from == "error" && (lasted < 4.0 - 1e-6 || lasted > 4.0 + slack)) {
        complain(QStringLiteral("an error was shown for %1 s").arg(lasted));
    }
}

void Judge::seeHUD(const Effect& effect) {
    const double now = m_world->actor.elapsed();
    const auto state = effect.fields["state"].get<std::string>();
    if (m_notice) {
        const double lasted = now - m_notice->since;
        const double due = m_notice->seconds + toSeconds(test::SimulatedHUDPanel::fade);
        if (lasted > due + slack)
            complain(QStringLiteral("a notice stayed for %1 s").arg(lasted));
        if (state == "hidden" && lasted < due - 1e-6 && !m_notice->outrun)
            complain(QStringLiteral("a notice went after %1 s").arg(lasted));
        m_notice.reset();
    }
    if (const auto due = std::exchange(m_noticeDue, std::nullopt)) {
        if (state != "notice" || effect.fields["text"] != due->toStdString())
            complain(QStringLiteral("a failure was not told: ") + *due);
    }
    if (state == "notice") {
        const auto text = QString::fromStdString(effect.fields["text"].get<std::string>());
        if (m_inFlight && !TextJudge::isOfDelivery(text))
            m_inFlight->notices << text;
        if (text.contains(QStringLiteral("microphone is gone")))
            m_microphoneLost.reset();
        // A fade that has begun before takes most notices along, but none that tells where a text is.
        const bool isOfText =
            text.contains(QStringLiteral("clipboard")) || text.contains(QStringLiteral("The text is lost"));
        m_notice = {now, effect.fields["seconds"].get<double>(), isFading() && !isOfText};
    }
    if ((state == "transcribing" || state == "translating") && m_inFlight)
        ++m_inFlight->passesShown;
    m_listeningMayStay = false;
}

void Judge::seeRecorderStart() {
    ++m_tally.dictations;
    if (m_menu != "idle")
        complain(QStringLiteral("a recording began while the menu was at ") + QString::fromStdString(m_menu));
    const bool tapMode = m_world->settings.hotkeyTapToToggle.get();
    const bool isJustUp = m_hotkeyUp == m_world->actor.now(); // its turn is still to come
    if (!tapMode && !m_releasesExcused && !isJustUp && !m_world->agent().hotkey.isPressed())
        complain(QStringLiteral("a recording began after the key had come up"));
    const auto pressed = m_world->agent().delegate().dictation().pressStartedAt();
    if (!tapMode && !m_releasesExcused && (!pressed || m_world->actor.now() - *pressed < seconds(0.6)))
        complain(QStringLiteral("a recording began before the hold delay had passed"));

    judgePressWithoutModel();
    m_snapshots = {snapshot()};
    m_world->microphone.onLost = [this] {
        if (m_menu == "recording") // rather than the wizard's demo
            m_microphoneLost = m_world->actor.now();
    };
}

void Judge::seeRecorderStop(const Effect& effect) {
    m_audioSeconds = effect.fields["seconds"].get<double>();
    if (m_microphoneLost == m_world->actor.now())
        m_microphoneLost.reset(); // the recording ended at the same moment
}

std::optional<pid_t> Judge::snapshot() const {
    const auto front = m_world->workspace.frontmostApplication();
    const bool ours = front && front->bundleID && front->bundleID == m_world->workspace.ownIdentifier;
    return front && !ours && m_world->isTextFieldFocused() ? std::optional(front->pid) : std::nullopt;
}

void Judge::begin() {
    const auto pressed = m_world->agent().delegate().dictation().pressStartedAt();
    if (!pressed || m_world->actor.now() - *pressed < seconds(0.2))
        complain(QStringLiteral("a press that was too short was not discarded"));
    if (m_audioSeconds < 0.3)
        complain(QStringLiteral("a recording of %1 s was not discarded").arg(m_audioSeconds));
    const auto& settings = m_world->settings;
    m_inFlight.emplace();
    m_inFlight->way = way();
    m_inFlight->source = settings.sourceLanguageCode.get();
    std::copy_if(m_ahead.begin(), m_ahead.end(), std::back_inserter(m_inFlight->heard),
                 [this](const Heard& heard) { return fits(heard); });
    if (m_inFlight->heard.size() < m_ahead.size())
        m_faults.note(Fault::AheadInVain);
    m_ahead.clear();
    m_inFlight->types = settings.insertionMode.get() == InsertionMode::AutoByDuration &&
                        m_audioSeconds < settings.typewriterThresholdSeconds.get();
}

void Judge::seeActivation() {
    if (!m_inFlight || m_snapshots == std::set<std::optional<pid_t>>{std::nullopt} ||
        !m_world->settings.protectFocusTarget.get() ||
        m_world->settings.focusProtectionMode.get() != FocusProtectionMode::Reactivate)
        complain(QStringLiteral("an application was brought to the front for no reason"));
    else if (!m_snapshots.contains(m_world->workspace.activations.back()))
        complain(QStringLiteral("the wrong application was brought to the front"));
    else
        m_inFlight->activated = true;
}

bool Judge::isOneOf(const std::string& state, std::initializer_list<const char*> states) {
    for (const auto* candidate : states) {
        if (state == candidate)
            return true;
    }
    return false;
}

} // namespace talvera::simulation
