// SPDX-License-Identifier: MIT
#include "TextJudge.h"

#include <algorithm>
#include <utility>

namespace talvera::simulation {

using test::Effect;
using test::SimulatedDesktop;

namespace {

/// The main thread may look for so long before it has decided where a text goes.
constexpr Duration lookingTime = seconds(1.0);

const auto lostWords = QStringLiteral("The text is lost");

/// Whether all characters of `part` are in `whole`, in this order.
bool isPartOf(const QString& part, const QString& whole) {
    auto next = part.begin();
    for (const auto character : whole) {
        if (next != part.end() && *next == character)
            ++next;
    }
    return next == part.end();
}

QString fieldOf(const Effect& effect, const char* name) {
    return QString::fromStdString(effect.fields[name].get<std::string>());
}

} // namespace

void TextJudge::watch(test::SimulatedWorld& world) {
    m_world = &world;
    world.keys.onText = [this](const QString& receiver, const QString& part) { seeArrival(receiver, part); };
    world.keys.onRefused = [this, tell = world.keys.onRefused](PostResult why) {
        seeRefusal(why);
        if (tell)
            tell(why);
    };
    world.desktop.onFocus = [this, tell = world.desktop.onFocus](const test::SimulatedWindow& before) {
        seeFocus();
        if (tell)
            tell(before);
    };
}

void TextJudge::leave() {
    m_world->keys.onText = nullptr;
    m_world->keys.onRefused = nullptr;
    m_world->desktop.onFocus = nullptr;
    m_texts.clear();
    m_current = nullptr;
}

void TextJudge::expect(ExpectedText text) {
    Text expected{std::move(text)};
    expected.mayLoseTarget = m_world->desktop.hasChangedSince(m_world->actor.now() - lookingTime);
    m_texts.push_back(std::move(expected));
}

void TextJudge::see(const Effect& effect) {
    if (effect.effect == "type" || effect.effect == "paste")
        begin(effect);
    else if (effect.effect == "clipboard")
        seeClipboard(fieldOf(effect, "text"));
    else if (effect.effect == "hud" && effect.fields["state"] == "notice")
        seeNotice(fieldOf(effect, "text"));
}

/// The text whose turn it is: of those with these words the first that has not begun.
TextJudge::Text* TextJudge::next(const QString& text) {
    const auto found = std::find_if(m_texts.begin(), m_texts.end(), [&](const Text& candidate) {
        return !candidate.hasBegun && candidate.text == text;
    });
    if (found == m_texts.end()) {
        m_complain(QStringLiteral("delivered without a reason: ") + text);
        return nullptr;
    }
    found->hasBegun = true;
    return &*found;
}

void TextJudge::begin(const Effect& effect) {
    const auto text = fieldOf(effect, "text");
    const bool types = effect.effect == "type";
    const bool isDone = m_current && m_current->isOnClipboard && !m_current->mayBeDirect;
    if (!m_current || isDone || m_current->text != text || m_current->isTyped || m_current->isPasted)
        m_current = next(text);
    if (!m_current)
        return;
    (types ? m_current->isTyped : m_current->isPasted) = true;
    if (!m_current->mayBeDirect)
        m_complain(QStringLiteral("inserted, though it was for the clipboard: ") + text);
}

void TextJudge::seeClipboard(const QString& text) {
    const bool isWhole = m_current && m_current->text == text && m_current->comesInParts &&
                         m_current->isOnClipboard && !m_current->isTyped;
    if (isWhole && !std::exchange(m_current->isReplaced, true))
        return;
    // One that is typed comes here when it doesn't arrive, perhaps for the second time: another program may
    // have had the clipboard when it was to be pasted.
    const bool isBack = m_current && m_current->text == text && m_current->isTyped &&
                        (m_current->arrived != text || m_current->isRefused);
    if (!isBack)
        m_current = next(text);
    if (m_current)
        m_current->isOnClipboard = true;
}

void TextJudge::seeRefusal(PostResult why) {
    if (!m_current)
        return;
    m_current->isRefused = true;
    m_current->hasGaps = m_current->hasGaps || why == PostResult::NotMakeable;
}

void TextJudge::seeArrival(const QString& receiver, const QString& part) {
    const auto window = receiver.section(u'/', 0, 0);
    if (!m_current) {
        m_complain(QStringLiteral("\"%1\" came into the window %2 from nowhere").arg(part, window));
        return;
    }
    auto& text = *m_current;
    text.arrived += part;
    if (text.hasGaps ? !isPartOf(text.arrived, text.text) : !text.text.startsWith(text.arrived))
        m_complain(QStringLiteral("\"%1\" came into the window %2 instead of \"%3\"")
                       .arg(text.arrived, window, text.text));
    if (!text.isProtected)
        return;
    if (text.window.isNull())
        text.window = window;
    const auto application = m_world->desktop.applicationOf(window);
    const bool isMeant = text.applications.empty() ? window != SimulatedDesktop::locker
                                                   : application && text.applications.contains(*application);
    if (!isMeant || window != text.window)
        m_complain(
            QStringLiteral("\"%1\" came into the window %2, which it was not meant for").arg(part, window));
}

void TextJudge::seeFocus() {
    for (auto& text : m_texts)
        text.mayLoseTarget = true;
}

bool TextJudge::isOfDelivery(const QString& notice) {
    return notice.contains(lostWords) ||
           notice.contains(QStringLiteral("the whole text is on the clipboard")) ||
           notice.contains(QStringLiteral("Couldn't insert the text")) ||
           notice.contains(QStringLiteral("hasn't taken the text"));
}

void TextJudge::seeNotice(const QString& notice) {
    if (!isOfDelivery(notice))
        return;
    const bool isLost = notice.contains(lostWords);
    const auto untold = std::find_if(m_texts.begin(), m_texts.end(), [&](const Text& text) {
        const bool isMeant =
            isLost ? !text.isOnClipboard : text.isOnClipboard && (text.isTyped || text.isPasted);
        return isMeant && !text.isTold && !text.isToldLost && text.arrived != text.text;
    });
    // Refused by the clipboard in its first part, and then as a whole.
    const auto isLostInParts = [](const Text& text) {
        return text.comesInParts && text.isToldLost && !text.isReplaced;
    };
    const auto again = isLost ? std::find_if(m_texts.begin(), m_texts.end(), isLostInParts) : m_texts.end();
    const auto typed = std::find_if(m_texts.begin(), m_texts.end(), [&](const Text& text) {
        return !text.isTold && !text.isToldLost && text.arrived == text.text;
    });
    if (untold != m_texts.end())
        (isLost ? untold->isToldLost : untold->isTold) = true;
    else if (again != m_texts.end())
        again->isReplaced = true;
    else if (typed != m_texts.end()) // its last key went down, but did not come up
        (isLost ? typed->isToldLost : typed->isTold) = true;
    else
        m_complain(QStringLiteral("told of no text: ") + notice);
}

/// Whether something has happened for which a text may be stopped on its way.
bool TextJudge::hasExcuse(const Text& text) const {
    return (text.isProtected && text.mayLoseTarget) || m_faults.sinceRest(Fault::KeysRefused) ||
           m_faults.sinceRest(Fault::KeyboardCutOff) || m_faults.sinceRest(Fault::PasteIgnored) ||
           m_faults.sinceRest(Fault::ClipboardTaken);
}

void TextJudge::judge(const Text& text) {
    if (text.arrived == text.text && !text.text.isEmpty())
        return;
    const auto words = QStringLiteral(": ") + text.text;
    if (text.isToldLost) {
        if (!m_faults.sinceRest(Fault::ClipboardRefused))
            m_complain(QStringLiteral("called lost, though the clipboard would have taken it") + words);
    } else if (!text.isOnClipboard) {
        m_complain(QStringLiteral("a text is nowhere") + words);
    } else if (text.isTyped || text.isPasted || !text.mayBeForClipboard) {
        if (!hasExcuse(text))
            m_complain(QStringLiteral("left on the clipboard for no reason") + words);
        if (!text.isTold)
            m_complain(QStringLiteral("left on the clipboard, and nobody was told") + words);
    }
}

void TextJudge::judgeRest() {
    for (const auto& text : m_texts)
        judge(text);
    m_texts.clear();
    m_current = nullptr;
}

} // namespace talvera::simulation
