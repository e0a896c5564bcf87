// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "core/CommandedHotkey.h"
#include "core/Trace.h"
#include "platform/keyboard/EventTap.h"
#include "platform/sound/MicrophonePermission.h"

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class AppSettings;
class ApplicationHost;
class Console;
class DictationController;
class DictationHUDController;
class HotkeyManager;
class LoginItem;
class MenuPanelController;
class ModelStore;
class OnboardingController;
class OnboardingWindow;
class PermissionPrompt;
class PreferenceStore;
class ReadinessMonitor;
class SessionAccess;
class StatusItem;
class TranslateToggleHotkey;
class Warmup;
class WhisperRunner;
struct Directories;

/// Starts the agent and keeps its parts connected: what happens at launch, and which setting or permission
/// concerns whom from then on. Everything that it starts holds it weakly. Main thread only.
class AppDelegate {
public:
    /// What the delegate works with; all that it does not own outlives it.
    struct Parts {
        MainActor& actor;
        ApplicationHost& application;
        const Directories& directories;
        LoginItem& loginItem;
        PreferenceStore& preferences;
        Console& console;
        SessionAccess& access;
        StatusItem& statusItem;
        AppSettings& settings;
        ModelStore& models;
        WhisperRunner& whisper;
        HotkeyManager& hotkey;
        TranslateToggleHotkey& translateToggle;
        ReadinessMonitor& readiness;
        DictationHUDController& hud;
        OnboardingController& onboarding;
        OnboardingWindow& onboardingWindow;
        Warmup& warmup;
        std::shared_ptr<PermissionPrompt> permissions;
        std::shared_ptr<DictationController> dictation;
        /// Shows the item in the tray; called once, at the launch.
        std::function<std::unique_ptr<MenuPanelController>()> makeMenuPanel;
        Trace trace;
    };

    explicit AppDelegate(Parts parts);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// The launch. To be called once, from the main actor.
    void applicationDidFinishLaunching();

    /// What the translate hotkey does: flips between no translation and the last target language.
    void toggleTranslation();

    /// The user has started the program again, for want of a better way to its panel.
    void startedAgain();
    /// The hotkey's release will go to the wizard.
    void endPressInHand();
    void closePanel();

    /// The hotkey for other programs, which press it for the user.
    CommandedHotkey& commandedHotkey() { return m_commandedHotkey; }

    const DictationController& dictation() const { return *m_parts.dictation; }

private:
    bool isWizardDue() const;
    /// What decides when the request for a missing permission is looked at again.
    struct PermissionHUDInputs {
        bool done; ///< the wizard has been finished
        AuthorizationStatus mic;
        bool ax;

        bool operator==(const PermissionHUDInputs&) const = default;
    };

    void applyLaunchAtLoginDefault();
    void decideOnWizard();
    void connectHotkeys();
    void sayHowToReachThePanel();
    void showBindingRefused();
    void subscribe();
    void repairEventTaps(bool axTrusted);

    PermissionHUDInputs permissionHUDInputs() const;
    void permissionHUDInputsMayHaveChanged();

    const Parts m_parts;
    CommandedHotkey m_commandedHotkey;
    std::unique_ptr<MenuPanelController> m_menuPanel; ///< from the launch on
    std::optional<PermissionHUDInputs> m_lastPermissionHUDInputs;
    Cancellables m_cancellables;
    Lifetime m_lifetime;
};

} // namespace talvera
