// SPDX-License-Identifier: MIT
#include "HUDScenes.h"

#include "Stage.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/hud/FocusNoticeText.h"
#include "text/Localization.h"
#include "views/hud/QuickHUDPanel.h"

#include <QCursor>

namespace talvera::test {

namespace {

constexpr int margin = 32;
constexpr Duration settled = seconds(0.35);

} // namespace

void photographHUD(Stage& stage) {
    using State = DictationHUDState;
    QuickHUDPanel* panel = nullptr;
    std::unique_ptr<DictationHUDController> hud;
    hud = std::make_unique<DictationHUDController>(stage.actor, [&] {
        auto made = std::make_unique<QuickHUDPanel>(QuickHUDPanel::Parts{
            stage.actor, stage.views, stage.desktop, hud->stateHolder(), stage.settings});
        panel = made.get();
        return made;
    });
    const auto photograph = [&](const QString& name) {
        stage.wait(settled);
        stage.photograph("hud-" + name,
                         panel->window().geometry().adjusted(-margin, -margin, margin, margin));
    };
    const auto speak = [&] {
        for (int report = 0; report < 12; ++report) {
            hud->setLevel(report % 4 == 0 ? 0.6F : 0.9F);
            stage.wait(seconds(0.05));
        }
    };
    const auto listening = [&](Duration since) {
        return State::Listening{stage.actor.date() - std::chrono::duration_cast<WallTime::duration>(since)};
    };

    hud->show(listening(seconds(7)));
    speak();
    stage.photograph("hud-listening", panel->window().geometry().adjusted(-margin, -margin, margin, margin));
    if (stage.isForFrontPage()) {
        hud->hide();
        stage.wait(settled);
        return;
    }
    stage.settings.hotkeyTapToToggle.set(true);
    photograph("listening-tap");
    stage.settings.hotkeyTapToToggle.set(false);
    stage.settings.targetLanguageCode.set("pt-BR");
    hud->show(listening(seconds(3725)));
    photograph("listening-silent-translating");
    hud->update(State::Transcribing{});
    photograph("transcribing");
    hud->update(State::Translating{localized("screenshot.language", "German")});
    photograph("translating");
    hud->update(State::Translating{localized("screenshot.cleanup", "cleanup")});
    photograph("translating-cleanup");

    const auto notice = [&](FocusNotice::Kind kind, const QString& application) {
        const auto shown = focusNoticeText({kind, application});
        hud->showNotice(shown.text, shown.tone, seconds(60));
    };
    notice(FocusNotice::Kind::PastedIn, "Text Editor");
    photograph("notice-info");
    hud->showNotice(localized("screenshot.nothing", "Nothing recognized"), State::NoticeTone::Warn,
                    seconds(60));
    photograph("notice-warn");
    notice(FocusNotice::Kind::ClipboardNotTaken, {});
    photograph("notice-not-taken");
    notice(FocusNotice::Kind::ClipboardReactivateFailed, "Text Editor");
    photograph("notice-long");
    notice(FocusNotice::Kind::ClipboardReactivateFailed,
           "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft");
    photograph("notice-longest");
    hud->showPermission(
        State::PermissionKind::Microphone, [] {}, [] {});
    photograph("permission-microphone");
    hud->showPermission(
        State::PermissionKind::Accessibility, [] {}, [] {});
    photograph("permission-accessibility");
    // The pointer rests on the cross.
    const auto card = panel->window().geometry();
    QCursor::setPos(QPoint(card.right() - 30, card.center().y()));
    stage.wait(seconds(1));
    photograph("permission-tip");
    QCursor::setPos(0, 0);
    hud->hide();
    stage.wait(settled);
}

} // namespace talvera::test
