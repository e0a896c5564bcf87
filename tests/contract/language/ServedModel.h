// SPDX-License-Identifier: MIT
#pragma once

#include "InMemoryPreferenceStore.h"
#include "RecordingConsole.h"
#include "concurrency/QtMainActor.h"
#include "eventually.h"
#include "linux/language/LlamaLanguageModel.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/Directories.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

#include <unistd.h>

namespace talvera::test {

/// A home with the model's server in its place, `program`, and what works with it.
struct ServedModel {
    explicit ServedModel(const QString& program, LlamaLanguageModel::Options options = {})
        : m_options(std::move(options)) {
        for (const auto* directory : {"t", "data", "config", "opt/Resources"})
            QDir(root.path()).mkpath(QLatin1String(directory));
        QFile::setPermissions(directories.temporary, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        if (!program.isEmpty())
            QFile::link(program, directories.resources + QStringLiteral("/Resources/llama-server"));
        start();
    }

    /// Makes it anew, as the next start of the agent does.
    void start() {
        model.reset();
        model = std::make_unique<LlamaLanguageModel>(
            LlamaLanguageModel::Parts{actor, files, preferences, directories, console}, m_options);
    }

    QString at(const QString& name) const {
        return directories.applicationSupport + QStringLiteral("/Talvera/language-models/") + name;
    }

    /// Puts a model there, or takes it away, and waits until that has been noticed.
    void put(const QString& name = QStringLiteral("m.gguf")) {
        QFile::copy(QStringLiteral(TALVERA_TEST_LANGUAGE_MODEL), at(name));
        EXPECT_TRUE(eventually([&] { return offers(name); }));
    }
    void takeAway(const QString& name = QStringLiteral("m.gguf")) {
        QFile::remove(at(name));
        EXPECT_TRUE(eventually([&] { return !offers(name); }));
    }
    bool offers(const QString& id) const {
        for (const auto& offer : model->offers()) {
            if (offer.id == id)
                return true;
        }
        return false;
    }

    /// Waits for the end of all requests, and for what is posted then.
    void settle() {
        const auto hasEnded = [this] { return model->requests() == 0; };
        // A model that computes takes its time on a busy machine.
        EXPECT_TRUE(eventually(hasEnded) || eventually(hasEnded) || eventually(hasEnded));
        turn();
    }
    void turn() {
        bool hasTurned = false;
        actor.post([&hasTurned] { hasTurned = true; });
        EXPECT_TRUE(eventually([&hasTurned] { return hasTurned; }));
    }

    /// The words of the command line that the server runs with; none when none runs.
    QStringList commandLine() const { return wordsOf(server()); }

    /// The server that runs; 0 for none.
    int server() const {
        QFile children(QStringLiteral("/proc/self/task/%1/children").arg(::getpid()));
        EXPECT_TRUE(children.open(QIODevice::ReadOnly)) << "this kernel doesn't tell of children";
        for (const auto& child : children.readAll().simplified().split(' ')) {
            if (wordsOf(child.toInt()).contains(QStringLiteral("--offline")))
                return child.toInt();
        }
        return 0;
    }
    void killServer() const {
        if (const auto process = server(); process > 0)
            ::kill(process, SIGKILL);
    }

    QTemporaryDir root;
    QtMainActor actor;
    PosixFileSystem files;
    InMemoryPreferenceStore preferences;
    RecordingConsole console;
    Directories directories{root.filePath(QStringLiteral("t")), root.filePath(QStringLiteral("data")),
                            root.filePath(QStringLiteral("config")), root.filePath(QStringLiteral("opt"))};
    std::unique_ptr<LlamaLanguageModel> model;

private:
    static QStringList wordsOf(int process) {
        QStringList words;
        QFile file(QStringLiteral("/proc/%1/cmdline").arg(process));
        if (process > 0 && file.open(QIODevice::ReadOnly)) {
            for (const auto& word : file.readAll().split('\0'))
                words << QFile::decodeName(word);
        }
        return words;
    }

    const LlamaLanguageModel::Options m_options;
};

} // namespace talvera::test
