// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/desktop/FileBrowser.h"
#include "platform/desktop/Notifier.h"
#include "platform/system/MachineDescription.h"
#include "platform/system/PlatformError.h"
#include "platform/system/Relauncher.h"
#include "platform/system/UpdateService.h"

#include <QStringList>

#include <cerrno>
#include <utility>
#include <vector>

namespace talvera::test {

/// A package service that answers what the test says.
class FakeUpdateService final : public UpdateService {
public:
    explicit FakeUpdateService(MainActor& actor)
        : m_actor(actor) {}

    UpdateAnswer answer{UpdateAnswer::Kind::UpToDate, {}};
    int questions = 0;

    void check(std::function<void(const UpdateAnswer&)> done) override {
        ++questions;
        m_actor.post([this, done = std::move(done)] { done(answer); });
    }

private:
    MainActor& m_actor;
};

/// A desktop that shows notifications, or has nothing to show them with.
class FakeNotifier final : public Notifier {
public:
    explicit FakeNotifier(MainActor& actor)
        : m_actor(actor) {}

    bool isThere = true;
    QStringList shown;

    void notify(const QString& title, const QString& text, std::function<void(bool shown)> done) override {
        if (isThere)
            shown << title + u'|' + text;
        m_actor.post([done = std::move(done), there = isThere] { done(there); });
    }

private:
    MainActor& m_actor;
};

/// A desktop that remembers the directories that it was to show.
class FakeFileBrowser final : public FileBrowser {
public:
    QStringList shown;

    bool show(const QString& directory) override {
        shown << directory;
        return true;
    }
};

/// Counts how often the program was to start again, or can't see to it.
class FakeRelauncher final : public Relauncher {
public:
    int starts = 0;
    bool fails = false;

    void startAgainAfterOurEnd() override {
        if (fails)
            throw PlatformError(QStringLiteral("Relauncher"), ENOENT);
        ++starts;
    }
};

/// A machine of which two things are known.
class FakeMachineDescription final : public MachineDescription {
public:
    std::vector<MachineFact> facts() override {
        return {{QStringLiteral("System"), QStringLiteral("Test 1")},
                {QStringLiteral("Desktop"), QStringLiteral("none")}};
    }
};

} // namespace talvera::test
