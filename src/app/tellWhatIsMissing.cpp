// SPDX-License-Identifier: MIT
#include "app/tellWhatIsMissing.h"

#include "models/ModelStore.h"
#include "platform/system/FileSystem.h"
#include "shell/hud/DictationHUDController.h"
#include "text/Localization.h"

namespace talvera {

namespace {

constexpr Duration noticeTime = seconds(6.0);

} // namespace

void tellWhatIsMissing(FileSystem& files, const ModelStore& models, DictationHUDController& hud) {
    if (models.isReady())
        return;
    const bool hasMain = files.exists(models.modelMainURL) && !files.isDirectory(models.modelMainURL);
    const auto text = hasMain
                          ? localized("hud.model.noEncoder", "A directory of the speech model is missing: %@")
                          : localized("hud.model.none", "The speech model is missing: %@");
    hud.showNotice(formatted(text, hasMain ? models.modelEncoderURL : models.modelMainURL),
                   DictationHUDState::NoticeTone::Warn, noticeTime);
}

} // namespace talvera
