// SPDX-License-Identifier: MIT
#include "Judge.h"

#include "core/Agent.h"
#include "models/ModelStore.h"
#include "speech/WhisperRunner.h"

#include <algorithm>
#include <utility>

// What must have become of a dictation at its end.

namespace talvera::simulation {

QString joinedTexts(const QStringList& texts) {
    QStringList joined;
    for (const auto& text : texts) {
        const auto part = text.simplified().split(u' ', Qt::SkipEmptyParts);
        auto overlap = std::min(joined.size(), part.size());
        while (joined.mid(joined.size() - overlap) != part.mid(0, overlap))
            --overlap;
        joined += part.mid(overlap);
    }
    return joined.join(u' ');
}

bool Judge::toolIsMissing() const {
    return !m_world->agent().models.isReady() ||
           !m_world->disk.isExecutableFile(m_world->agent().whisper.binaryURL());
}

void Judge::judgeEnd(bool failed) {
    const auto flight = *std::exchange(m_inFlight, std::nullopt);
    const auto run = std::exchange(m_run, std::nullopt);
    const bool broken = flight.toolFailed || (run && !run->isAhead);
    if (failed) {
        ++m_tally.failed;
        // What the first pass has heard is counted, whatever becomes of the second, which may not even start.
        m_recordsDue += flight.passesShown > 1 ? 1 : 0;
        if (!broken && !toolIsMissing() && !m_launchFailuresExcused &&
            !m_faults.sinceRest(Fault::DirectoryGone))
            complain(QStringLiteral("a dictation failed though the recogniser gave its text"));
        m_noticeDue = QStringLiteral("Transcription failed");
        return;
    }
    if (broken) {
        complain(QStringLiteral("the recogniser failed and nobody was told"));
        return;
    }

    m_inFlight = flight; // for the judgements that follow
    m_tally.partsAhead += static_cast<std::uint64_t>(
        std::ranges::count_if(flight.heard, [](const Heard& heard) { return heard.run.isAhead; }));
    const auto first = joinedTexts(flight.texts(flight.way == Way::Direct));
    m_recordsDue += first.isEmpty() ? 0 : 1;
    judgeRecords(!first.isEmpty());
    auto text = first;
    if (flight.way == Way::ForWantOfAI ||
        (flight.way == Way::SecondPass && !joinedTexts(flight.texts(true)).isEmpty()))
        text = joinedTexts(flight.texts(true));
    if (first.isEmpty()) {
        ++m_tally.empty;
        if (!flight.notices.isEmpty())
            complain(QStringLiteral("silence was answered with a notice"));
    } else if (flight.isOfModel()) {
        judgeAnswer(first);
    } else if (text.isEmpty()) {
        ++m_tally.empty;
        expectNotice(QStringLiteral("Nothing recognized"));
    } else {
        judgeDelivery(text);
        if (flight.way == Way::ForWantOfAI)
            expectNotice(QStringLiteral("Whisper translation"));
    }
    m_inFlight.reset();
}

/// What can't be written goes along with the next record.
void Judge::judgeRecords(bool isOneDue) {
    if (m_recordsWritten > m_recordsDue)
        complain(QStringLiteral("a record without a dictation"));
    if (isOneDue && m_recordsWritten < m_recordsDue && !m_faults.sinceRest(Fault::StatisticsRefused))
        complain(QStringLiteral("a dictation without a record"));
}

/// Whether the focus may not have been what it is now when the agent looked.
bool Judge::isUnsettled() const {
    return m_snapshots.size() > 1 || m_world->desktop.hasChangedSince(m_world->actor.now() - seconds(1.0));
}

void Judge::judgeDelivery(const QString& text, bool comesInParts) {
    const auto& settings = m_world->settings;
    const auto front = m_world->workspace.frontmostApplication();
    const bool isInFront = front && m_snapshot && front->pid == *m_snapshot;
    const bool runs = m_snapshot && m_world->workspace.runningApplication(*m_snapshot);

    bool direct = true;
    if (!settings.protectFocusTarget.get() || isUnsettled()) {
        // Delivered to whatever has the focus, or after a look at what no longer is.
    } else if (!m_snapshot) {
        direct = m_world->isTextFieldFocused();
        if (!direct)
            expectNotice(QStringLiteral("No text field focused"));
    } else if (m_inFlight->activated) {
        direct = isInFront && m_world->isTextFieldFocused();
        expectNotice(direct ? QStringLiteral("Pasted in ") : QStringLiteral("Couldn't switch back to "));
    } else if (!isInFront) {
        direct = false;
        if (!runs)
            expectNotice(QStringLiteral(" closed — text copied"));
        else if (settings.focusProtectionMode.get() == FocusProtectionMode::ClipboardOnly)
            expectNotice(QStringLiteral("Focus changed"));
        else
            complain(QStringLiteral("nobody tried to bring the application back"));
    }

    ExpectedText expected{.text = text};
    expected.isProtected = settings.protectFocusTarget.get();
    expected.comesInParts = comesInParts;
    expected.mayBeDirect = direct;
    expected.mayBeForClipboard = !direct || (expected.isProtected && isUnsettled());
    if (!m_snapshots.contains(std::nullopt)) {
        for (const auto& application : m_snapshots)
            expected.applications.insert(*application);
    }
    m_texts.expect(std::move(expected));
    if (!direct)
        ++m_tally.toClipboard;
    else
        ++(m_inFlight->types ? m_tally.typed : m_tally.pasted);
}

bool Judge::isFading() const {
    const auto* panel = m_world->windows.hudPanel();
    return panel && panel->fadesUnderWay > 0;
}

void Judge::expectNotice(const QString& part) {
    if (isFading())
        return; // it is still to come
    for (const auto& notice : m_inFlight->notices) {
        if (notice.contains(part))
            return;
    }
    complain(QStringLiteral("no notice \"…%1…\"").arg(part));
}

} // namespace talvera::simulation
