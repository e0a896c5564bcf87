// SPDX-License-Identifier: MIT
#pragma once

#include "Faults.h"
#include "SimulatedWorld.h"
#include "TextJudge.h"

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>
#include <set>
#include <vector>

namespace talvera::simulation {

/// What became of the dictations.
struct Tally {
    std::uint64_t dictations = 0; ///< recordings that began
    std::uint64_t typed = 0;
    std::uint64_t pasted = 0;
    std::uint64_t toClipboard = 0;
    std::uint64_t discarded = 0;  ///< too short
    std::uint64_t empty = 0;      ///< nothing was recognised
    std::uint64_t failed = 0;     ///< the recogniser failed
    std::uint64_t notSaved = 0;   ///< the recording could not be written
    std::uint64_t notStarted = 0; ///< the recorder refused
    std::uint64_t partsAhead = 0; ///< recognised while the user still spoke, and used
    std::uint64_t acceptedLeaks = 0;

    Tally& operator+=(const Tally& other);
};

/// The texts of one recording's parts in one: words at the end of one that begin the next stand once.
QString joinedTexts(const QStringList& texts);

/// Watches a world and knows what must always hold in it, by a model of its own of what should become of each
/// dictation. Keeps the first thing that was wrong.
class Judge {
public:
    explicit Judge(FaultLog& faults);
    Judge(const Judge&) = delete;
    Judge& operator=(const Judge&) = delete;

    /// To be called for each agent that has been launched.
    void watch(test::SimulatedWorld& world);
    /// The agent is about to be killed: nothing of it is awaited any more.
    void seeDeath();
    /// The next one is there, on the machine on which `dead` was.
    void seeReturn(test::SimulatedWorld& dead);
    /// The program has been started a second time.
    void seeSecondStart();

    /// To be called when nothing is left to happen: nothing may have been left behind either.
    void judgeRest();

    void complain(const QString& what);
    /// The first thing that was wrong.
    const std::optional<QString>& violation() const { return m_violation; }
    const Tally& tally() const { return m_tally; }

    /// What is done to the world, since some of it excuses what else would be wrong.
    void hear(const QString& words);

private:
    /// What becomes of a recording, in passes of the recogniser.
    enum class Way {
        Plain,       ///< transcribed
        Direct,      ///< translated
        SecondPass,  ///< transcribed, then translated
        ForWantOfAI, ///< the same, with a word to the user
        CleanUp,     ///< transcribed, then cleaned up by the language model
        ByModel,     ///< transcribed, then translated by the language model
        InTwoHops,   ///< transcribed, then translated by the recogniser, and once more by the language model
    };

    /// A run of the recogniser.
    struct Run {
        QString wav;
        QString language;
        bool translates = false;
        bool isAhead = false; ///< begun while the user still speaks
    };

    /// What it has left in its text file.
    struct Heard {
        QString file;
        Run run;
        QString text;
    };

    /// A dictation from its release on, and what is known of it by then.
    struct InFlight {
        Way way = Way::Plain;
        QString source;
        bool types = false; ///< rather than pastes
        bool toolFailed = false;
        std::vector<Heard> heard; ///< one for each file and mode, in their order
        bool lastRunTranslates = false;
        std::vector<test::ModelAnswer> answers; ///< of the language model
        int passesShown = 0;                    ///< by the HUD
        bool activated = false;
        QStringList notices;

        QStringList texts(bool translated) const;
        bool isOfModel() const;
        bool goesByTwoHops() const;
    };

    void see(const test::Effect& effect);
    void seeMenu(const std::string& state);
    void seeHUD(const test::Effect& effect);
    void seeRecorderStart();
    void seeRecorderStop(const test::Effect& effect);
    void seeFiles();
    void seeRun(const test::Effect& effect);
    bool isRunDue(const Run& run) const;
    void judgeRun(const Run& run, Way way, const QString& source);
    void noteRun();
    void seeRequest(const test::Effect& effect);
    void judgeAnswer(const QString& transcript);
    void seeText(const QByteArray& bytes, const QString& path);
    void seeActivation();

    void begin();
    bool fits(const Heard& heard) const;
    void forgetWhatIsAhead();
    void judgeEnd(bool failed);
    void judgeDelivery(const QString& text, bool comesInParts = false);
    void judgeRecords(bool isOneDue);
    void judgeFiles();
    void judgeHUDAtRest();
    void judgeWizard();
    void judgeModel();
    void judgePressWithoutModel();
    void judgeDownloads();
    void expectNotice(const QString& part);

    /// Where the next recording would belong.
    std::optional<pid_t> snapshot() const;
    bool isUnsettled() const;
    bool isFading() const;
    Way way() const;
    bool toolIsMissing() const;
    static bool isOneOf(const std::string& state, std::initializer_list<const char*> states);

    FaultLog& m_faults;
    test::SimulatedWorld* m_world = nullptr;
    std::optional<QString> m_violation;
    TextJudge m_texts;
    Tally m_tally;

    std::string m_menu = "idle";
    double m_menuSince = 0;
    double m_audioSeconds = 0;
    std::optional<pid_t> m_snapshot;
    std::set<std::optional<pid_t>> m_snapshots; ///< if the focus has moved while it was looked at
    Way m_wayAhead = Way::Plain;                ///< as the settings were when the recording began
    QString m_sourceAhead;
    std::vector<Heard> m_ahead;      ///< in the present recording
    bool m_wasModelReplaced = false; ///< since that began
    std::optional<Run> m_run;        ///< whose text has not been read yet
    std::optional<InFlight> m_inFlight;
    std::set<QString> m_expectedLeaks;
    std::uint64_t m_recordsDue = 0; ///< in the statistics
    std::uint64_t m_recordsWritten = 0;
    std::optional<Instant> m_hotkeyUp;
    Instant m_modelGone = Instant::min();    ///< if it is missing
    std::optional<Instant> m_microphoneLost; ///< and not told yet
    bool m_listeningMayStay = false;
    bool m_saveFailed = false;
    std::optional<QString> m_noticeDue;    ///< what the HUD must show next
    bool m_releasesExcused = false;        ///< until the next rest, since the end of a press may go unheard
    bool m_preferencesWereRefused = false; ///< some may not be saved until the next one is
    bool m_launchFailuresExcused = false;  ///< the same: the recogniser may not even start

    struct ShownNotice {
        double since;
        double seconds;
        bool outrun; ///< a fade that began before takes it away
    };
    std::optional<ShownNotice> m_notice;
};

} // namespace talvera::simulation
