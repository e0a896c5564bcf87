// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAudioEngine.h"
#include "FakeFileSystem.h"
#include "FakeKeyEventPoster.h"
#include "FakePasteboard.h"
#include "platform/language/LanguageRecognizer.h"
#include "platform/sound/SoundPlayer.h"
#include "platform/system/ApplicationHost.h"
#include "platform/system/LoginItem.h"
#include "platform/system/PlatformError.h"

#include <QStringList>

#include <cerrno>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace talvera::test {

/// A disk that tells what becomes of the files on it.
class ObservedFileSystem final : public FileSystem {
public:
    explicit ObservedFileSystem(FakeFileSystem& disk)
        : m_disk(disk) {}

    std::function<void(const QString& path)> onRemoved;
    std::function<void(const QString& path)> onRemovalFailed; ///< of a file that is there
    std::function<void(const QString& path)> onWriteFailed;
    std::function<void(const QString& path, const QByteArray& bytes)> onRead;
    bool removalsFail = false; ///< nothing can be deleted

    void write(const QString& path, const QByteArray& bytes) override {
        try {
            m_disk.write(path, bytes);
        } catch (const PlatformError&) {
            if (onWriteFailed)
                onWriteFailed(path);
            throw;
        }
    }
    QByteArray read(const QString& path) override {
        const auto bytes = m_disk.read(path);
        if (onRead)
            onRead(path, bytes);
        return bytes;
    }
    void readBlocks(const QString& path, qint64 blockSize,
                    const std::function<void(QByteArrayView block)>& visit) override {
        m_disk.readBlocks(path, blockSize, visit);
    }
    void move(const QString& from, const QString& to) override { m_disk.move(from, to); }
    void removeAll(const QString& path) override { m_disk.removeAll(path); }
    void remove(const QString& path) override {
        try {
            if (removalsFail)
                throw PlatformError(QStringLiteral("FileSystem"), EACCES, path);
            m_disk.remove(path);
        } catch (const PlatformError&) {
            if (onRemovalFailed && m_disk.exists(path))
                onRemovalFailed(path);
            throw;
        }
        if (onRemoved)
            onRemoved(path);
    }
    void createDirectories(const QString& path) override { m_disk.createDirectories(path); }
    bool exists(const QString& path) override { return m_disk.exists(path); }
    bool isDirectory(const QString& path) override { return m_disk.isDirectory(path); }
    bool isExecutableFile(const QString& path) override { return m_disk.isExecutableFile(path); }
    std::optional<qint64> size(const QString& path) override { return m_disk.size(path); }
    std::optional<FileStamp> stamp(const QString& path) override { return m_disk.stamp(path); }
    void readAhead(const QString& path) override { m_disk.readAhead(path); }
    std::optional<qint64> availableBytes(const QString& directory) override {
        return m_disk.availableBytes(directory);
    }

private:
    FakeFileSystem& m_disk;
};

/// A microphone that tells when it begins and ends to listen.
class ObservedAudioEngine final : public AudioEngine {
public:
    explicit ObservedAudioEngine(FakeAudioEngine& microphone)
        : m_microphone(microphone) {}

    std::function<void()> onStarted;
    std::function<void()> onStopped;

    AudioFormat inputFormat() override { return m_microphone.inputFormat(); }
    void installTap(std::size_t bufferFrames, const AudioFormat& format, Tap tap) override {
        m_microphone.installTap(bufferFrames, format, std::move(tap));
    }
    void removeTap() override { m_microphone.removeTap(); }
    void start() override {
        m_microphone.start();
        if (onStarted)
            onStarted();
    }
    void stop() override {
        m_microphone.stop();
        if (onStopped)
            onStopped();
    }
    void setOnLost(std::function<void()> lost) override { m_microphone.setOnLost(std::move(lost)); }

private:
    FakeAudioEngine& m_microphone;
};

/// A keyboard that tells of each text that is typed or pasted, as the job begins.
class ObservedKeyEventPoster final : public KeyEventPoster {
public:
    explicit ObservedKeyEventPoster(FakeKeyEventPoster& keys)
        : m_keys(keys) {}

    std::function<void(const QString& text)> onTyping;
    std::function<void()> onPaste;

    TypingTargetPtr focusedTarget() override { return m_keys.focusedTarget(); }
    bool isTypingFaithful(const TypingTargetPtr& target) override { return m_keys.isTypingFaithful(target); }
    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override {
        if (onTyping)
            onTyping(chunks.join(QString()));
        return m_keys.beginTyping(chunks, target);
    }
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override {
        if (phase == KeyPhase::Down && onPaste)
            onPaste();
        return m_keys.postPaste(phase, target);
    }

private:
    FakeKeyEventPoster& m_keys;
};

/// A clipboard that tells what is put on it.
class ObservedPasteboard final : public Pasteboard {
public:
    explicit ObservedPasteboard(FakePasteboard& pasteboard)
        : m_pasteboard(pasteboard) {}

    std::function<void(const QString& text)> onText;

    State state() override { return m_pasteboard.state(); }
    bool setString(const QString& text) override {
        const bool isSet = m_pasteboard.setString(text);
        if (isSet && onText)
            onText(text);
        return isSet;
    }

private:
    FakePasteboard& m_pasteboard;
};

/// The process in its session.
class FakeApplicationHost final : public ApplicationHost {
public:
    QString directory;
    std::vector<ActivationPolicy> policies; ///< all that were set, in order

    void changeCurrentDirectory(const QString& path) override { directory = path; }
    void setActivationPolicy(ActivationPolicy policy) override { policies.push_back(policy); }
    void terminate() override { ++terminations; }

    int terminations = 0;
};

class FakeLanguageRecognizer final : public LanguageRecognizer {
public:
    std::optional<QString> answer;
    int calls = 0;

    std::optional<QString> dominantLanguage(const QString&) override {
        ++calls;
        return answer;
    }
};

class FakeLoginItem final : public LoginItem {
public:
    bool registered = false;
    bool fails = false;
    int registrations = 0;

    bool isRegistered() override { return registered; }
    void registerProgram() override {
        ++registrations;
        if (fails)
            throw PlatformError(QStringLiteral("LoginItem"), 1);
        registered = true;
    }
    void unregisterProgram() override { registered = false; }
};

class FakeSoundPlayer final : public SoundPlayer {
public:
    std::function<void(const QString& name)> onPlay;

    void play(const QString& name) override {
        if (onPlay)
            onPlay(name);
    }
};

} // namespace talvera::test
