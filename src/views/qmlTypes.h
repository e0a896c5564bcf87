// SPDX-License-Identifier: MIT
#pragma once

#include "shell/hud/HUDModel.h"
#include "shell/panel/LanguageModelNotes.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/settings/HotkeyRecorderModel.h"

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

struct SettingModelType {
    Q_GADGET
    QML_FOREIGN(talvera::SettingModel)
    QML_NAMED_ELEMENT(SettingModel)
    QML_UNCREATABLE("a view gets it")
};

struct HotkeyRecorderModelType {
    Q_GADGET
    QML_FOREIGN(talvera::HotkeyRecorderModel)
    QML_NAMED_ELEMENT(HotkeyRecorderModel)
    QML_UNCREATABLE("a view gets it")
};

struct LanguageModelNotesType {
    Q_GADGET
    QML_FOREIGN(talvera::LanguageModelNotes)
    QML_ANONYMOUS
};

} // namespace talvera::qml
