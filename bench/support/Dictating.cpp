// SPDX-License-Identifier: MIT
#include "support/Dictating.h"

#include <algorithm>

namespace talvera::bench {

namespace {

constexpr int speechRate = 16000; // samples a second, as spoken() makes them

/// So long no key moves within a text: its pace is some 27 ms.
constexpr std::chrono::milliseconds quiet{250};

/// Of a user for whom this isn't the first day: what is said once for all times, such as that the desktop has
/// no tray, has been said. It would come up in the middle of what is measured.
QJsonObject ofAnOldUser(QJsonObject preferences) {
    preferences.insert(QStringLiteral("noTrayHintShown"), true);
    return preferences;
}

} // namespace

Dictating::Dictating(const QJsonObject& preferences, const QString& program)
    : m_voice(qgetenv("PULSE_SERVER").toStdString(), "rigmic_feed", speechRate) {
    m_home.setPreferences(ofAnOldUser(preferences));
    m_agent.emplace(m_home, program);
    if (m_agent->count(QStringLiteral("microphone authorized")) == 0)
        m_agent->await(QStringLiteral("microphone authorized"));
}

void Dictating::holdAndSay(const std::vector<std::int16_t>& speech) {
    hold();
    say(speech);
    release();
}

KeyWitness::Clock::time_point Dictating::hold() {
    m_witness.forget();
    m_keys.press(hotkey);
    m_agent->await(QStringLiteral("hud listening"));
    return KeyWitness::Clock::now();
}

void Dictating::say(const std::vector<std::int16_t>& speech) {
    m_voice.sayAndWait(speech);
}

void Dictating::release() {
    m_keys.release(hotkey);
}

void Dictating::awaitEnd() {
    m_agent->await(QStringLiteral("menu idle"));
    firstTyped();
    m_witness.awaitQuiet(quiet);
}

KeyWitness::Clock::time_point Dictating::released() {
    return m_witness.await([](const auto& key) { return key.key == hotkey && !key.isDown; }).at;
}

KeyWitness::Clock::time_point Dictating::firstTyped() {
    return m_witness.await([](const auto& key) { return key.isPosted && key.isDown; }).at;
}

std::vector<KeyWitness::Key> Dictating::typed() const {
    auto keys = m_witness.seen();
    std::erase_if(keys, [](const auto& key) { return !key.isPosted; });
    return keys;
}

} // namespace talvera::bench
