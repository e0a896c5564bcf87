// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>

namespace talvera::simulation {

/// What goes wrong around the agent, as far as it has taken effect.
enum class Fault {
    FocusMovedWhileTyping,
    WindowClosedWhileTyping,
    OtherWindowWhileTyping,
    PopUpWhileTyping,
    LockedWhileTyping,
    FocusMovedWhileHeld, ///< while the main thread looks or waits
    ApplicationNotBroughtBack,
    AccessibilitySlow,
    AccessibilitySilent,
    ToolFailed,
    ToolLeftNoText, ///< no file, or none that can be read
    ToolLeftEmptyFile,
    ToolLeftCutFile,
    ToolGone,
    PreparedKilled, ///< a recogniser that waits
    ModelReplaced,  ///< during a recording
    MemoryShort,    ///< so that none is prepared
    AheadFailed,    ///< the recogniser, while the user spoke
    AheadInVain,    ///< what was heard then isn't wanted any more
    KeysRefused,
    KeyboardCutOff,
    ClipboardRefused,
    ClipboardTaken,
    PasteIgnored,
    KeysAndClipboardRefused,
    MicrophoneRefused,
    MicrophoneLost,
    PermissionTaken,
    KeysNotHeard,
    RecordingNotSaved,
    NothingDeleted,
    DirectoryGone,
    StatisticsRefused,
    PreferencesRefused,
    LanguageRefused, ///< by the language model
    AnswerRefused,
    AnswerBrokenOff,
    AnswerEmpty,
    ModelCame, ///< by a download
    ModelCameInHalf,
    DownloadBroken,
    DownloadOffline,
    DownloadCancelled,
    KilledDownloading,
    KilledIdle,
    KilledRecording,
    KilledRecognising,
    KilledTyping,
    StartedAgain,
    ClockSetForward,
    ClockSetBack,
};

constexpr auto faultCount = static_cast<std::size_t>(Fault::ClockSetBack) + 1;

/// What it is called in words.
const char* faultName(Fault fault);

/// How often each fault has occurred.
struct FaultTally {
    std::array<std::uint64_t, faultCount> counts{};

    FaultTally& operator+=(const FaultTally& other);
    /// Those that never have, in words.
    QStringList missing() const;
};

/// Which faults have occurred, ever and since the last rest.
class FaultLog {
public:
    void note(Fault fault);
    bool sinceRest(Fault fault) const { return m_sinceRest.test(static_cast<std::size_t>(fault)); }
    /// Everything works again, and nothing of what did not is under way any more.
    void rest() { m_sinceRest.reset(); }
    const FaultTally& tally() const { return m_tally; }

private:
    FaultTally m_tally;
    std::bitset<faultCount> m_sinceRest;
};

} // namespace talvera::simulation
