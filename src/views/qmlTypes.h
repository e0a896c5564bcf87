// SPDX-License-Identifier: MIT
#pragma once

#include "shell/hud/HUDModel.h"
#include "shell/onboarding/OnboardingModel.h"
#include "shell/panel/LanguageModelNotes.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/settings/SettingsModel.h"

#include <QtQml/qqmlregistration.h>

// The models by the names that the views know them by, so that a misspelt property is found when the views
// are checked. Views get them; they make none.
namespace talvera::qml {

struct HUDModelType {
    Q_GADGET
    QML_FOREIGN(talvera::HUDModel)
    QML_NAMED_ELEMENT(HUDModel)
    QML_UNCREATABLE("a view gets it")
};

struct MenuPanelModelType {
    Q_GADGET
    QML_FOREIGN(talvera::MenuPanelModel)
    QML_NAMED_ELEMENT(MenuPanelModel)
    QML_UNCREATABLE("a view gets it")
};

struct MenuPanelTextsType {
    Q_GADGET
    QML_FOREIGN(talvera::MenuPanelTexts)
    QML_NAMED_ELEMENT(MenuPanelTexts)
    QML_UNCREATABLE("a view gets it")
};

struct TargetLanguagePickerType {
    Q_GADGET
    QML_FOREIGN(talvera::TargetLanguagePicker)
    QML_NAMED_ELEMENT(TargetLanguagePicker)
    QML_UNCREATABLE("a view gets it")
};

struct HotkeyRecorderModelType {
    Q_GADGET
    QML_FOREIGN(talvera::HotkeyRecorderModel)
    QML_NAMED_ELEMENT(HotkeyRecorderModel)
    QML_UNCREATABLE("a view gets it")
};

struct OnboardingModelType {
    Q_GADGET
    QML_FOREIGN(talvera::OnboardingModel)
    QML_NAMED_ELEMENT(OnboardingModel)
    QML_UNCREATABLE("a view gets it")
};

struct OnboardingTextsType {
    Q_GADGET
    QML_FOREIGN(talvera::OnboardingTexts)
    QML_NAMED_ELEMENT(OnboardingTexts)
    QML_UNCREATABLE("a view gets it")
};

struct PermissionsModelType {
    Q_GADGET
    QML_FOREIGN(talvera::PermissionsModel)
    QML_NAMED_ELEMENT(PermissionsModel)
    QML_UNCREATABLE("a view gets it")
};

struct DownloadModelType {
    Q_GADGET
    QML_FOREIGN(talvera::DownloadModel)
    QML_NAMED_ELEMENT(DownloadModel)
    QML_UNCREATABLE("a view gets it")
};

struct HotkeyChoiceModelType {
    Q_GADGET
    QML_FOREIGN(talvera::HotkeyChoiceModel)
    QML_NAMED_ELEMENT(HotkeyChoiceModel)
    QML_UNCREATABLE("a view gets it")
};

struct DemoModelType {
    Q_GADGET
    QML_FOREIGN(talvera::DemoModel)
    QML_NAMED_ELEMENT(DemoModel)
    QML_UNCREATABLE("a view gets it")
};

struct SettingsRowModelType {
    Q_GADGET
    QML_FOREIGN(talvera::SettingsRow)
    QML_NAMED_ELEMENT(SettingsRowModel)
    QML_UNCREATABLE("a view gets it")
};

struct SwitchRowType {
    Q_GADGET
    QML_FOREIGN(talvera::SwitchRow)
    QML_NAMED_ELEMENT(SwitchRow)
    QML_UNCREATABLE("a view gets it")
};

struct ChoiceRowType {
    Q_GADGET
    QML_FOREIGN(talvera::ChoiceRow)
    QML_NAMED_ELEMENT(ChoiceRow)
    QML_UNCREATABLE("a view gets it")
};

struct SliderRowType {
    Q_GADGET
    QML_FOREIGN(talvera::SliderRow)
    QML_NAMED_ELEMENT(SliderRow)
    QML_UNCREATABLE("a view gets it")
};

struct SettingsModelType {
    Q_GADGET
    QML_FOREIGN(talvera::SettingsModel)
    QML_NAMED_ELEMENT(SettingsModel)
    QML_UNCREATABLE("a view gets it")
};

struct GeneralSettingsType {
    Q_GADGET
    QML_FOREIGN(talvera::GeneralSettings)
    QML_NAMED_ELEMENT(GeneralSettings)
    QML_UNCREATABLE("a view gets it")
};

struct HotkeySettingsType {
    Q_GADGET
    QML_FOREIGN(talvera::HotkeySettings)
    QML_NAMED_ELEMENT(HotkeySettings)
    QML_UNCREATABLE("a view gets it")
};

struct LanguageSettingsType {
    Q_GADGET
    QML_FOREIGN(talvera::LanguageSettings)
    QML_NAMED_ELEMENT(LanguageSettings)
    QML_UNCREATABLE("a view gets it")
};

struct CleanupSettingsType {
    Q_GADGET
    QML_FOREIGN(talvera::CleanupSettings)
    QML_NAMED_ELEMENT(CleanupSettings)
    QML_UNCREATABLE("a view gets it")
};

struct AboutModelType {
    Q_GADGET
    QML_FOREIGN(talvera::AboutModel)
    QML_NAMED_ELEMENT(AboutModel)
    QML_UNCREATABLE("a view gets it")
};

struct ThirdPartyLicencesType {
    Q_GADGET
    QML_FOREIGN(talvera::ThirdPartyLicences)
    QML_NAMED_ELEMENT(ThirdPartyLicences)
    QML_UNCREATABLE("a view gets it")
};

struct PermissionCardType {
    Q_GADGET
    QML_FOREIGN(talvera::PermissionCard)
    QML_ANONYMOUS
};

struct LanguageModelNotesType {
    Q_GADGET
    QML_FOREIGN(talvera::LanguageModelNotes)
    QML_ANONYMOUS
};

} // namespace talvera::qml
