// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "core/AgentEnvironment.h"
#include "platform/keyboard/EventTap.h"
#include "platform/sound/MicrophonePermission.h"
#include "shell/panel/MenuPanelController.h"

#include <memory>
#include <optional>

namespace talvera {

class DictationController;
class PermissionPrompt;

/// Starts the agent and keeps its parts connected: what happens at launch, and which setting or permission
/// concerns whom from then on. Everything that it starts holds it weakly. Main thread only.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
public:
    explicit AppDelegate(AgentEnvironment environment);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// The launch. To be called once, from the main actor.
    void applicationDidFinishLaunching();

    /// What the translate hotkey does: flips between no translation and the last target language.
    void toggleTranslation();

    /// The user has started the program again, for want of a better way to its panel.
    void startedAgain();
    void closePanel();

    const DictationController& dictation() const { return *m_dictation; }

private:
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
    void showBindingRefused(WatchResult result);
    void subscribe();
    void repairEventTaps(bool axTrusted);

    PermissionHUDInputs permissionHUDInputs() const;
    void permissionHUDInputsMayHaveChanged();

    AgentEnvironment m_env;
    std::shared_ptr<PermissionPrompt> m_permissions;
    std::shared_ptr<DictationController> m_dictation;
    std::optional<MenuPanelController> m_menuPanel;
    std::optional<PermissionHUDInputs> m_lastPermissionHUDInputs;
    Cancellables m_cancellables;
};

} // namespace talvera
