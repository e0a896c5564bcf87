// SPDX-License-Identifier: MIT
#include "Simulation.h"

#include "shortest.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace talvera::simulation {

namespace {

constexpr int roundsPerLife = 40;
constexpr int roundsPerLongLife = 8; // a minute of speech or two in each
constexpr double roundSeconds = 12;

/// Times are written down to the microsecond.
double rounded(double at) {
    return std::round(at * 1e6) / 1e6;
}

} // namespace

Simulation::Simulation(std::uint64_t seed, Kind kind)
    : m_kind(kind)
    , m_dice(seed) {
    if (kind == Kind::Long)
        hearBySound();
}

/// The words tell which part of which recording it is, and how it was asked for.
void Simulation::hearBySound() {
    m_trial.play().world().tool.hears = [](const test::ToolRequest& run, const QByteArray& recording) {
        const auto name = run.wav.section(u'-', -2).section(u'.', 0, 0);
        return QStringLiteral("%1%2 %3 bytes as %4 behind %5")
            .arg(run.translates ? QStringLiteral("translated ") : QString(), name)
            .arg(recording.size())
            .arg(run.language, QString::number(run.prompt.value_or(QString()).size()))
            .toUtf8();
    };
}

void Simulation::run() {
    chooseSettings();
    for (const auto& words : std::as_const(m_given))
        m_trial.give(words);
    m_trial.launch();
    const int rounds = m_kind == Kind::Long ? roundsPerLongLife : roundsPerLife;
    for (int round = 0; round < rounds && !violation(); ++round) {
        m_before.insert(m_before.end(), m_round.begin(), m_round.end());
        m_round.clear();
        m_trial.play().forget();
        playRound();
        if (onRound)
            onRound();
    }
}

QStringList Simulation::course() const {
    QStringList lines;
    for (const auto& effect : m_trial.play().followed(true)) {
        if (!effect.words.startsWith(QStringLiteral("recognise ")))
            lines << QStringLiteral("%1 %2").arg(effect.at, 0, 'f', 6).arg(effect.words);
    }
    return lines;
}

QStringList Simulation::account() const {
    return TwoColumns{m_round, m_trial.play().followed(true)}.rows();
}

Story Simulation::story() const {
    const auto kind = kindOf(violation().value_or(QString()));
    // The settings are what they were given last.
    std::map<QString, QString> settings;
    const auto isSetting = [](const QString& words) { return words.startsWith(QStringLiteral("set ")); };
    for (const auto& words : m_given)
        settings[words.section(u' ', 0, 2)] = words;
    for (const auto& thing : m_before) {
        if (isSetting(thing.words))
            settings[thing.words.section(u' ', 0, 2)] = thing.words;
    }
    Story round;
    for (const auto& [name, words] : settings)
        round.given << words;
    for (const auto& thing : m_round)
        round.columns.done.push_back({rounded(thing.at - m_roundStart), thing.words});
    const auto short_ = shortest(round);
    if (kindOf(short_.preamble.value(0).mid(2)) == kind)
        return short_;
    Story life;
    life.given = m_given;
    life.columns.done = m_before;
    life.columns.done.insert(life.columns.done.end(), m_round.begin(), m_round.end());
    return shortest(life);
}

void Simulation::set(const char* name, const QString& value) {
    m_given << QStringLiteral("set %1 to %2").arg(QString::fromLatin1(name), value);
}

void Simulation::chooseSettings() {
    const auto truth = [](bool value) { return QString::fromLatin1(value ? "true" : "false"); };
    const auto one = [this](std::initializer_list<const char*> values) {
        return QStringLiteral("\"%1\"").arg(QString::fromUtf8(m_dice.pick(values)));
    };
    m_isNew = m_dice.chance(0.1);
    set("hasOnboarded", truth(!m_isNew));
    if (m_isNew && m_dice.chance(0.5))
        m_given << QStringLiteral("the model is missing") << download();
    set("hotkeyBinding", randomBinding());
    m_isTapMode = m_dice.chance(0.3);
    set("hotkeyTapToToggle", truth(m_isTapMode));
    set("targetLanguageCode", one({"off", "off", "off", "en", "en", "de", "ja"}));
    set("sourceLanguageCode", one({"auto", "en", "en", "de", "ru"}));
    m_pastes = m_dice.chance(1.0 / 3.0);
    set("insertionMode", one({m_pastes ? "paste" : "autoByDuration"}));
    set("typewriterThresholdSeconds", QString::number(m_dice.pick({15.0, 15.0, 1.0, 0.0})));
    set("protectFocusTarget", truth(m_dice.chance(0.85)));
    set("focusProtectionMode", one({"reactivate", "clipboardOnly"}));
    set("aiCleanupEnabled", truth(m_dice.chance(0.3)));
    set("cleanupTone", one({"casual", "professional", "off"}));
    set("startSoundName", one({"Submarine", "Off", "none of that name"}));
}

void Simulation::playRound() {
    m_roundStart = m_trial.play().elapsed();
    chooseAudio();
    writeToolScript();
    if (m_kind != Kind::Long) {
        if (m_dice.chance(0.2))
            provideModel();
        for (auto faults = m_dice.pick({0, 0, 1, 1, 2}); faults > 0; --faults)
            breakSomething();
    }
    if (m_isTapMode)
        scheduleTaps();
    else
        scheduleHolds();
    scheduleDisturbances();
    scheduleWizard();
    double end = m_roundStart + roundSeconds;
    for (const auto& thing : m_round)
        end = std::max(end, thing.at);
    m_trial.perform(m_round, end);
    m_round.push_back({m_trial.play().elapsed(), Trial::restWords});
    if (!violation())
        m_trial.rest();
}

void Simulation::after(double delay, const QString& words) {
    m_round.push_back({rounded(m_roundStart + std::max(delay, 0.0)), words});
}

void Simulation::chooseAudio() {
    m_isLong = m_dice.chance(m_kind == Kind::Long ? 1.0 : 0.02);
    const double spoken = m_isLong              ? m_dice.pick({28.0, 28.5, 40.0, 48.0, 48.5})
                          : m_dice.chance(0.15) ? m_dice.pick({0.0, 0.1, 0.29, 0.3})
                                                : m_dice.between(0.31, 1.1);
    now(QStringLiteral("the user speaks for %1 s").arg(spoken));
}

/// Holds of every length, the next often before the one before has come to its end.
void Simulation::scheduleHolds() {
    double at = m_dice.between(0, 0.5);
    for (auto presses = m_dice.pick({1, 1, 1, 2, 3}); presses > 0; --presses) {
        const auto length = isAhead() ? m_dice.pick({0.61, 1.0, 1.5, 3.0})
                                      : m_dice.pick({0.05, 0.59, 0.6, 0.61, 0.7, 0.8, 1.5, 3.0});
        const double held = length + m_dice.between(0, 0.01);
        after(at, "the hotkey goes down");
        if (m_dice.chance(0.1))
            after(at + m_dice.between(0, held), "the hotkey repeats");
        if (m_dice.chance(0.03))
            after(at + m_dice.between(0, held), "the press is heard twice");
        scheduleRelease(at + held);
        scheduleSpeech(at + 0.6, at + held);
        scheduleFaults({at, at + held, at + held + m_firstDuration});
        at += held + m_dice.pick({0.01, 0.1, 0.18, 0.5, 1.0, 4.0});
    }
}

/// What is said while the key is down, much faster than anybody can, since time is dear.
void Simulation::scheduleSpeech(double begin, double end) {
    if (!isAhead() || end <= begin || m_dice.chance(0.2))
        return;
    for (auto count = m_dice.pick({1, 1, 2}); count > 0; --count)
        after(m_dice.between(begin, end),
              QStringLiteral("the microphone hears %1 s").arg(m_dice.pick({6.0, 29.0, 30.0, 54.0})));
    if (m_dice.chance(0.5))
        after(m_dice.between(begin, end), preparationFault());
}

void Simulation::scheduleTaps() {
    double at = m_dice.between(0, 0.5);
    double before = at;
    for (auto taps = m_dice.pick({1, 2, 2, 2, 3, 4, 5}); taps > 0; --taps) {
        after(at, "the hotkey goes down");
        scheduleRelease(at + 0.03);
        scheduleSpeech(before, at);
        scheduleFaults({before, at, at + m_firstDuration});
        before = at;
        at += m_dice.pick({0.05, 0.15, 0.19, 0.21, 0.5, 1.0, 2.0, 4.0}) + m_dice.between(0, 0.01);
    }
}

void Simulation::scheduleRelease(double at) {
    after(at, m_dice.chance(0.3) ? "the hotkey comes up behind its modifier" : "the hotkey comes up");
}

void Simulation::scheduleDisturbances() {
    for (auto count = m_dice.pick({0, 0, 1, 1, 2, 4}); count > 0; --count)
        after(m_dice.between(0, 6), disturbance());
}

QString Simulation::randomBinding() {
    const auto chord = HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option, VirtualKey::Space);
    using Key = HotkeyBinding::SpecialKey;
    const auto special = [this] {
        return m_dice.pick({Key::RightCommand, Key::RightCommand, Key::RightOption, Key::Fn, Key::CapsLock});
    };
    const auto binding = m_dice.chance(0.4) ? chord : HotkeyBinding::holdSpecial(special());
    return QString::fromUtf8(binding.encoded());
}

} // namespace talvera::simulation
