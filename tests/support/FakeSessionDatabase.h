// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PlatformError.h"
#include "platform/system/SessionDatabase.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace talvera::test {

/// Databases in memory. The one "on disk" outlives those who open it. Each kind of access fails on demand.
class FakeSessionDatabases final : public SessionDatabases {
public:
    std::vector<DictationSession> onDisk;
    std::optional<QString> openedPath;

    bool openFails = false;
    bool openInMemoryFails = false;
    bool insertFails = false;
    bool fetchFails = false;
    std::function<void(const DictationSession&)> onInsert;
    std::function<void()> onInsertRefused;

    std::unique_ptr<SessionDatabase> open(const QString& path) override {
        openedPath = path;
        failIf(openFails, "disk");
        return std::make_unique<Database>(*this, onDisk);
    }

    std::unique_ptr<SessionDatabase> openInMemory() override {
        failIf(openInMemoryFails, "memory");
        return std::make_unique<Database>(*this, m_inMemory);
    }

private:
    class Database final : public SessionDatabase {
    public:
        Database(FakeSessionDatabases& owner, std::vector<DictationSession>& sessions)
            : m_owner(owner)
            , m_sessions(sessions)
            , m_known(sessions.size()) {}

        void insert(const std::vector<DictationSession>& sessions) override {
            if (m_owner.insertFails && m_owner.onInsertRefused)
                m_owner.onInsertRefused();
            failIf(m_owner.insertFails, "full");
            for (const auto& session : sessions) {
                m_sessions.push_back(session);
                if (m_owner.onInsert)
                    m_owner.onInsert(session);
            }
            m_known += sessions.size();
        }

        void forEach(std::optional<WallTime> after,
                     const std::function<void(const DictationSession&)>& visit) override {
            failIf(m_owner.fetchFails, "unreadable");
            for (const auto& session : m_sessions) {
                if (!after || session.timestamp > *after)
                    visit(session);
            }
        }

        bool hasGrownElsewhere() override {
            return std::exchange(m_known, m_sessions.size()) != m_sessions.size();
        }

    private:
        FakeSessionDatabases& m_owner;
        std::vector<DictationSession>& m_sessions;
        std::size_t m_known;
    };

    static void failIf(bool fails, const char* message) {
        if (fails)
            throw PlatformError(QStringLiteral("SessionDatabase"), 1, QString::fromUtf8(message));
    }

    std::vector<DictationSession> m_inMemory;
};

} // namespace talvera::test
