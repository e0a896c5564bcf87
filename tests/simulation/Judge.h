// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedWorld.h"

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
    std::uint64_t acceptedLeaks = 0;

    Tally& operator+=(const Tally& other);
};

/// Watches a world and knows what must always hold in it, by a model of its own of what should become of each
/// dictation. Keeps the first thing that was wrong.
class Judge {
public:
    explicit Judge(test::SimulatedWorld& world);

    /// To be called once the agent has been launched.
    void watch();

    /// To be called when nothing is left to happen: nothing may have been left behind either.
    void judgeRest();

    void complain(const QString& what);
    /// The first thing that was wrong.
    const std::optional<QString>& violation() const { return m_violation; }
    const Tally& tally() const { return m_tally; }

    /// Whether a press may outlive its release at the moment, since its end may go unheard.
    void excuseReleases(bool excused) { m_releasesExcused = excused; }
    /// Whether the recogniser may not even start at the moment.
    void excuseLaunchFailures(bool excused) { m_launchFailuresExcused = excused; }

private:
    struct Delivery {
        std::string effect; ///< "type", "paste" or "clipboard"
        QString text;
    };

    /// What becomes of a recording, in passes of the recogniser.
    enum class Way {
        Plain,       ///< transcribed
        Direct,      ///< translated
        SecondPass,  ///< transcribed, then translated
        ForWantOfAI, ///< the same, with a word to the user
    };

    /// A dictation from its release on, and what is known of it by then.
    struct InFlight {
        Way way = Way::Plain;
        QString source;
        bool types = false; ///< rather than pastes
        bool toolFailed = false;
        bool runUnderWay = false; ///< a run of the tool whose text has not been read yet
        QStringList transcribed;
        QStringList translated;
        bool lastRunTranslates = false;
        int records = 0;
        bool activated = false;
        QStringList notices;
    };

    void see(const test::Effect& effect);
    void seeMenu(const std::string& state);
    void seeHUD(const test::Effect& effect);
    void seeRecorderStart();
    void seeRun(const test::Effect& effect);
    void seeText(const QByteArray& bytes, const QString& path);
    void seeActivation();

    void begin();
    void judgeEnd(bool failed);
    void judgeDelivery(const QString& text);
    void judgeFiles();
    void judgeDeliveries();
    void judgeHUDAtRest();
    void expectNotice(const QString& part);

    Way way() const;
    bool toolIsMissing() const;
    static bool isOneOf(const std::string& state, std::initializer_list<const char*> states);

    test::SimulatedWorld& m_world;
    std::optional<QString> m_violation;
    Tally m_tally;

    std::string m_menu = "idle";
    double m_menuSince = 0;
    double m_audioSeconds = 0;
    std::optional<pid_t> m_snapshot;
    std::optional<InFlight> m_inFlight;
    std::vector<Delivery> m_expectedDeliveries;
    std::set<QString> m_expectedLeaks;
    QString m_textReceived; ///< by the focused application, since the beginning
    bool m_listeningMayStay = false;
    bool m_saveFailed = false;
    std::optional<QString> m_noticeDue; ///< what the HUD must show next
    bool m_releasesExcused = false;
    bool m_launchFailuresExcused = false;

    struct ShownNotice {
        double since;
        double seconds;
        bool outrun; ///< a fade that began before takes it away
    };
    std::optional<ShownNotice> m_notice;
};

} // namespace talvera::simulation
