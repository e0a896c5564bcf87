// SPDX-License-Identifier: MIT
#include "Simulation.h"

// What goes wrong around the agent, and what else happens to it.

namespace talvera::simulation {

namespace {

// As many as a round may need, so that none repeats.
constexpr int toolRuns = 12;
constexpr int toolRunsOfParts = 90;

} // namespace

/// Something that is broken for the whole round.
void Simulation::breakSomething() {
    switch (m_dice.below(16)) {
    case 0:
        return now("the microphone is broken");
    case 1:
        return now("the disk is full");
    case 2:
        return now(QStringLiteral("the disk refuses one write after %1 more").arg(m_dice.below(4)));
    case 3:
        return now("nothing can be deleted");
    case 4:
        return now("the recogniser is gone");
    case 5:
        return now(m_dice.pick({"no application can be brought to the front",
                                "applications come to the front without the focus",
                                "applications come to the front without a text field"}));
    case 6:
        return now("no text field");
    case 7:
        return now(m_dice.pick({"focus on nothing", "focus on our own window"}));
    case 8:
        return now("no converter for the microphone");
    case 9:
        return now("statistics can't be written");
    case 10:
        return now("preferences can't be written");
    case 11:
    case 12:
        return now(m_dice.chance(0.3) ? QStringLiteral("applications don't say what has the focus")
                                      : QStringLiteral("applications take %1 s to say what has the focus")
                                            .arg(m_dice.pick({0.02, 0.1, 0.2})));
    default:
        return breakDelivery();
    }
}

/// The ways to the user's window.
void Simulation::breakDelivery() {
    switch (m_dice.below(7)) {
    case 0:
        return now(m_dice.pick({"no key can be typed", "no key types a b", "no key types a 3"}));
    case 1:
        return now("the clipboard takes no text");
    case 2:
        now(m_dice.chance(0.5) ? "no key can be typed" : "no key types an o");
        return now("the clipboard takes no text");
    case 3:
        return now("another program takes the clipboard at once");
    case 4:
        return now("windows ignore what is pasted");
    case 5:
        now("the way to the keyboard is cut off");
        return now(m_dice.chance(0.5) ? "the clipboard takes no text" : "windows ignore what is pasted");
    default:
        return now("an input method changes what is typed");
    }
}

/// What befalls just this press and its text.
void Simulation::scheduleFaults(const Hold& hold) {
    if (m_dice.chance(0.35))
        scheduleDesktop(hold);
    if (m_dice.chance(0.03))
        after(m_dice.between(hold.press + 0.5, std::max(hold.release, hold.press + 0.6)), preparationFault());
    if (m_dice.chance(0.02))
        after(hold.text + m_dice.between(0, 0.4), "the way to the keyboard is cut off");
    if (m_dice.chance(0.03)) {
        after(m_dice.between(hold.press + 0.6, std::max(hold.release, hold.press + 0.6)),
              QStringLiteral("the microphone dies when it has heard %1 s")
                  .arg(m_dice.pick({0.0, 0.2, 0.35, 0.5})));
    }
    if (m_dice.chance(0.01))
        after(m_dice.between(hold.press, hold.text + 0.2), "the temporary directory is deleted");
    if (m_dice.chance(0.02))
        after(m_dice.between(hold.press, hold.text + 0.5), "the program is started again");
    if (m_dice.chance(0.015))
        after(m_dice.between(hold.press, hold.text + 0.6), "the program is killed and started again");
}

/// What was done ahead of the release is then not wanted, or was never done.
QString Simulation::preparationFault() {
    switch (m_dice.below(5)) {
    case 0:
    case 1:
        return QStringLiteral("the recogniser that waits is killed");
    case 2:
        return QStringLiteral("the model is replaced");
    case 3:
        return QStringLiteral("memory is short");
    default:
        return settingsDisturbance();
    }
}

/// Windows come and go around the moment at which the text is there.
void Simulation::scheduleDesktop(const Hold& hold) {
    for (auto count = m_dice.pick({1, 1, 2, 3}); count > 0; --count)
        after(hold.text + m_dice.between(-0.1, 0.6), desktopDisturbance());
}

QString Simulation::desktopDisturbance() {
    return QString::fromLatin1(m_dice.pick(
        {"focus on the mail", "focus on the mail", "focus on the nameless program", "focus on our own window",
         "focus on nothing", "focus on the editor", "focus on the editor", "the editor quits",
         "another window of the program opens", "another window of the program opens",
         "the program's first window comes back", "a list of completions opens",
         "a list of completions opens", "the list of completions goes", "the screen is locked",
         "the screen is locked", "the screen is unlocked", "no text field", "a text field"}));
}

/// Something that happens in the middle of it all.
QString Simulation::disturbance() {
    switch (m_dice.below(22)) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
        return desktopDisturbance();
    case 7:
    case 8:
    case 9:
        return settingsDisturbance();
    case 10:
        return QStringLiteral("the microphone is forbidden");
    case 11:
        return QStringLiteral("the desktop doesn't let us watch keys");
    case 12:
        return QStringLiteral("the permissions are looked at");
    case 13:
        return QStringLiteral("the model is missing");
    case 14:
    case 15:
    case 16:
        return wizardStep();
    case 17:
        return QString::fromLatin1(m_dice.pick({"click the card away", "click the card's button"}));
    case 18:
        after(m_dice.between(4, 8), "keys are heard again");
        return QStringLiteral("keys are no longer heard");
    case 19:
        return QStringLiteral("the clock is set %1 by %2 s")
            .arg(QString::fromLatin1(m_dice.pick({"forward", "back"})))
            .arg(m_dice.pick({0.2, 3.0, 60.0, 3600.0, 34560000.0}), 0, 'f', 1);
    case 20:
        return QStringLiteral("the panel is closed");
    default:
        return QStringLiteral("translate key");
    }
}

QString Simulation::settingsDisturbance() {
    const auto set = [](const char* name, const QString& value) {
        return QStringLiteral("set %1 to %2").arg(QString::fromLatin1(name), value);
    };
    const auto text = [this](std::initializer_list<const char*> values) {
        return QStringLiteral("\"%1\"").arg(QString::fromLatin1(m_dice.pick(values)));
    };
    switch (m_dice.below(8)) {
    case 0:
        return set("targetLanguageCode", text({"off", "en", "de"}));
    case 1:
        return set("sourceLanguageCode", text({"auto", "en", "de"}));
    case 2:
        return set("insertionMode", text({m_pastes ? "paste" : "autoByDuration", "paste"}));
    case 3:
        return set("typewriterThresholdSeconds", QString::fromLatin1(m_dice.pick({"15", "0.5"})));
    case 4:
        return set("protectFocusTarget", QString::fromLatin1(m_dice.pick({"true", "false"})));
    case 5:
        return set("focusProtectionMode", text({"reactivate", "clipboardOnly"}));
    case 6:
        m_isTapMode = !m_isTapMode;
        return set("hotkeyTapToToggle", QString::fromLatin1(m_isTapMode ? "true" : "false"));
    default:
        return set("hotkeyBinding", randomBinding());
    }
}

void Simulation::writeToolScript() {
    for (int i = 0; i < (m_isLong ? toolRunsOfParts : toolRuns); ++i) {
        const double takes = m_dice.pick({0.0, 0.1, 0.3, 0.3, 1.0, 3.0}) + m_dice.between(0, 0.01);
        const double duration = m_kind == Kind::Long ? 0 : takes;
        if (i == 0)
            m_firstDuration = duration;
        now(QString::fromLatin1(i == 0 ? "first it " : "then it ") + toolRun(duration));
    }
}

/// For this round, and what it writes in it.
void Simulation::provideModel() {
    constexpr int answers = 10;
    now(QStringLiteral("a language model is there, and hears ") +
        QString::fromLatin1(m_dice.pick({"nothing", "en", "de"})));
    for (int i = 0; i < answers; ++i)
        now(QString::fromLatin1(i == 0 ? "first the model " : "then the model ") + modelAnswer());
}

/// The last twenty letters are held back until the end, so that shorter answers come in one part.
QString Simulation::modelAnswer() {
    ++m_texts;
    QStringList words;
    for (const auto* end : {"a", "b", "c", "d", "e", "f"})
        words << QStringLiteral("ai%1%2").arg(m_texts).arg(QString::fromLatin1(end));
    const bool isLong = m_pastes && m_dice.chance(0.5);
    const auto text = words.mid(0, isLong ? words.size() : 2).join(u' ');
    const auto written =
        QStringLiteral("writes \"%1\" within %2 s").arg(text).arg(m_dice.pick({0.0, 0.2, 1.0, 5.0, 20.0}));
    switch (m_dice.below(10)) {
    case 0:
        return QStringLiteral("refuses the language");
    case 1:
        return QString::fromLatin1(m_dice.pick({"won't say it", "wants less", "is still loading"}));
    case 2:
    case 3:
        return written + QStringLiteral(", but breaks off after %1 letters")
                             .arg(m_dice.below(static_cast<std::size_t>(text.size())));
    case 4:
        return m_dice.chance(0.5) ? QStringLiteral("writes \"\" within 1 s") : written;
    default:
        return written;
    }
}

QString Simulation::toolRun(double duration) {
    if (m_kind == Kind::Long)
        return QStringLiteral("hears \"what hearBySound tells\" within 0 s");
    // Words that no other run has, but for those of two parts that overlap.
    const auto before = m_isLong && m_dice.chance(0.3) ? QStringLiteral("word%1b ").arg(m_texts) : QString();
    ++m_texts;
    const auto within = QStringLiteral(" within %1 s").arg(duration, 0, 'f', 6);
    const auto heard = QStringLiteral("hears \"%1word%2a word%2b\"").arg(before).arg(m_texts) + within;
    if (!m_dice.chance(0.25))
        return heard;
    switch (m_dice.below(9)) {
    case 0:
        return QStringLiteral("fails") + within;
    case 1:
        return QStringLiteral("crashes") + within;
    case 2:
        return QStringLiteral("hangs within 60 s");
    case 3:
        return QStringLiteral("ends without a text") + within;
    case 4:
        return QStringLiteral("leaves no text that can be read") + within;
    case 5:
        return QStringLiteral("hears \"%1\"").arg(QString::fromLatin1(m_dice.pick({"", " \\n", "\\n\\n"}))) +
               within;
    case 6:
        return heard + QStringLiteral(", but leaves an empty file");
    case 7:
        return heard + QStringLiteral(", but leaves a cut file");
    default:
        return m_dice.chance(0.2) ? QStringLiteral("can't be started") : heard;
    }
}

} // namespace talvera::simulation
