// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// The interface's language, the start, the sound and the delivery.
SettingsSectionBody {
    id: section

    required property SettingsModel settings
    readonly property GeneralSettings general: settings.general

    title: settings.sectionTitle
    subtitle: settings.sectionSubtitle
    Component.onCompleted: general.appear()

    SettingsCard {
        SettingsSelect {
            first: true
            fitsAll: false
            leastWidth: 180
            setting: section.general.displayLanguage
        }
    }
    SettingsBanner {
        visible: section.general.asksToRelaunch
        systemIcon: "arrow.clockwise.circle.fill"
        text: section.general.relaunchText
        action: section.general.relaunchNow
        color: Theme.accentFill
        tone: Theme.accent
        onActed: section.general.relaunch()
    }
    SettingsCard {
        SettingsSwitch {
            first: true
            setting: section.general.launchAtLogin
        }
        SettingsSwitch { setting: section.general.showMenuBarIcon }
        SettingsSelect { setting: section.general.startSound }
    }
    SettingsCard {
        SettingsSwitch {
            first: true
            setting: section.general.typewriter
        }
        SettingsSlider {
            indent: Theme.spacingLarge
            setting: section.general.typewriterThreshold
        }
    }
    SettingsCard {
        SettingsSwitch {
            first: true
            setting: section.general.protectFocus
        }
        SettingsSelect {
            indent: Theme.spacingLarge
            setting: section.general.protectionMode
        }
    }
}
