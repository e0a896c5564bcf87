// SPDX-License-Identifier: MIT
#pragma once

#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/xdg/JsonPreferenceStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace talvera::test {

/// Counts the jobs that it hands on.
class CountingQueue final : public SerialQueue {
public:
    explicit CountingQueue(SerialQueue& inner)
        : m_inner(inner) {}
    void async(std::function<void()> job) override {
        ++jobs;
        m_inner.async(std::move(job));
    }
    void sleep(Duration duration) override { m_inner.sleep(duration); }

    int jobs = 0;

private:
    SerialQueue& m_inner;
};

/// A configuration directory with a store that is launched and ended at will.
class JsonPreferenceStoreFixture : public testing::Test {
protected:
    QString directory() const { return m_home.path() + QStringLiteral("/Talvera"); }
    QString path() const { return directory() + QStringLiteral("/preferences.json"); }

    JsonPreferenceStore& launch() {
        end();
        m_store = std::make_unique<JsonPreferenceStore>(directory(), files, actor, writer, console);
        return *m_store;
    }
    void end() {
        m_store.reset();
        actor.settle();
    }

    void placeFile(const QByteArray& bytes) {
        QDir().mkpath(directory());
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    static QByteArray contentOf(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList namesInDirectory() const {
        return QDir(directory())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    PosixFileSystem files;
    SimulatedMainActor actor;
    SimulatedSerialQueue disk{actor};
    CountingQueue writer{disk};
    RecordingConsole console;

private:
    QTemporaryDir m_home;
    std::unique_ptr<JsonPreferenceStore> m_store;
};

} // namespace talvera::test
