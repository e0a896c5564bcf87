// SPDX-License-Identifier: MIT
#pragma once

#include "Faults.h"
#include "SimulatedWorld.h"

#include <QString>

#include <deque>
#include <functional>
#include <optional>
#include <set>

namespace talvera::simulation {

/// What is known of a text when it has been given to delivery.
struct ExpectedText {
    QString text;
    bool mayBeDirect = false;          ///< typed or pasted
    bool mayBeForClipboard = false;    ///< put on the clipboard for the user
    bool isProtected = true;           ///< it belongs to one window
    bool comesInParts = false;         ///< the clipboard gets the first part of it, and then the whole
    std::set<pid_t> applications = {}; ///< whose window that may be; empty: that of any application
};

/// Judges texts by their receivers: each comes whole into one window that it was meant for, or lies whole on
/// the clipboard and the user has been told why. Nothing else comes into any window.
class TextJudge {
public:
    using Complain = std::function<void(const QString&)>;

    TextJudge(const FaultLog& faults, Complain complain)
        : m_faults(faults)
        , m_complain(std::move(complain)) {}

    void watch(test::SimulatedWorld& world);
    /// What the agent owes is forgotten, since it has died.
    void leave();

    void expect(ExpectedText text);
    void see(const test::Effect& effect);
    void judgeRest();
    /// Whether it tells what has become of a text on its way, which may be that of an earlier dictation.
    static bool isOfDelivery(const QString& notice);

private:
    struct Text : ExpectedText {
        bool hasBegun = false;
        bool isTyped = false;  ///< or has been tried to
        bool isPasted = false; ///< the same
        bool isOnClipboard = false;
        bool isTold = false;        ///< why it is there
        bool isToldLost = false;    ///< it is not even there
        bool isReplaced = false;    ///< by the whole of it, on the clipboard, or has been tried to
        bool isRefused = false;     ///< one of its keys was, perhaps the last one as it came up
        bool hasGaps = false;       ///< where a key could not be made
        bool mayLoseTarget = false; ///< the focus has moved since it was routed
        QString window = {};        ///< that has got the first of it
        QString arrived = {};
    };

    void begin(const test::Effect& effect);
    void seeClipboard(const QString& text);
    void seeRefusal(PostResult why);
    void seeArrival(const QString& receiver, const QString& part);
    void seeFocus();
    void seeNotice(const QString& notice);
    void judge(const Text& text);
    Text* next(const QString& text);
    bool hasExcuse(const Text& text) const;

    const FaultLog& m_faults;
    Complain m_complain;
    test::SimulatedWorld* m_world = nullptr;
    std::deque<Text> m_texts; ///< since the last rest, in the order of their delivery
    Text* m_current = nullptr;
};

} // namespace talvera::simulation
