// SPDX-License-Identifier: MIT
#include "StoryPlayer.h"

#include <algorithm>
#include <stdexcept>

namespace talvera::simulation {

namespace {

constexpr double afterwards = 60; // seconds

} // namespace

std::vector<TwoColumns::Entry> StoryPlayer::play(const Story& story) {
    for (const auto& words : story.given)
        m_play.give(words);
    m_play.launch();
    double end = 0;
    for (const auto& thing : story.columns.done)
        end = std::max(end, thing.at);
    m_play.perform(story.columns.done, end + afterwards);
    if (const auto mistake = m_play.mistake())
        throw std::invalid_argument(mistake->toStdString());

    auto followed = m_play.followed(false);
    for (const auto& more : {textsThatWentAstray(), leftBehind()})
        followed.insert(followed.end(), more.begin(), more.end());
    return followed;
}

/// What is in the windows, where it is not all that has been delivered to one of them.
std::vector<TwoColumns::Entry> StoryPlayer::textsThatWentAstray() {
    QString delivered;
    for (const auto& effect : m_play.world().effects) {
        if (effect.effect == "type" || effect.effect == "paste")
            delivered += QString::fromStdString(effect.fields["text"].get<std::string>());
    }
    const auto& texts = m_play.world().keys.texts();
    if (texts.empty() ? delivered.isEmpty() : texts.size() == 1 && texts.begin()->second == delivered)
        return {};
    std::vector<TwoColumns::Entry> entries;
    for (const auto& [window, text] : texts)
        entries.push_back({m_play.elapsed(), QStringLiteral("in the window %1: %2").arg(window, text)});
    if (texts.empty())
        entries.push_back({m_play.elapsed(), QStringLiteral("in no window")});
    return entries;
}

std::vector<TwoColumns::Entry> StoryPlayer::leftBehind() {
    std::vector<TwoColumns::Entry> entries;
    for (const auto& path : m_play.world().wavFiles() + m_play.world().chunkFiles())
        entries.push_back({m_play.elapsed(), QStringLiteral("left behind: ") + path});
    return entries;
}

} // namespace talvera::simulation
