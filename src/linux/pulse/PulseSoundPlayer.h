// SPDX-License-Identifier: MIT
#pragma once

#include "linux/pulse/PulseConnection.h"
#include "platform/sound/AudioFile.h"
#include "platform/sound/SoundPlayer.h"

#include <pulse/operation.h>
#include <pulse/stream.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace talvera {

/// Plays the sound files of a directory on the process's connection to the sound server, one sound at a time:
/// the next one cuts the last one short. Nothing here waits for the server; without one there is silence.
class PulseSoundPlayer final : public SoundPlayer {
public:
    /// `directory` holds a file NAME.wav for each sound.
    PulseSoundPlayer(PulseConnection& connection, AudioFileReader& files, QString directory);
    ~PulseSoundPlayer() override;

    void play(const QString& name) override;

private:
    struct Sound {
        QString name;
        AudioFormat format;
        std::vector<std::byte> samples;
    };

    bool load(const QString& name);
    void begin();
    void onStateChange();
    void pour();
    void end();

    PulseConnection& m_connection;
    AudioFileReader& m_files;
    QString m_directory;

    // Under the connection's lock.
    std::optional<Sound> m_sound; ///< the one that was played last
    pa_stream* m_stream = nullptr;
    pa_operation* m_drain = nullptr;
};

} // namespace talvera
