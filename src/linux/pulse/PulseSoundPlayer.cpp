// SPDX-License-Identifier: MIT
#include "linux/pulse/PulseSoundPlayer.h"

#include "linux/pulse/sampleSpec.h"
#include "platform/system/PlatformError.h"

#include <pulse/proplist.h>

#include <cstdint>
#include <utility>

namespace talvera {

namespace {

/// How much the server wants to have in hand: little, so that the sound is heard at once.
constexpr pa_usec_t latency = 40'000;

} // namespace

PulseSoundPlayer::PulseSoundPlayer(PulseConnection& connection, AudioFileReader& files, QString directory)
    : m_connection(connection)
    , m_files(files)
    , m_directory(std::move(directory)) {}

PulseSoundPlayer::~PulseSoundPlayer() {
    const PulseLoop::Lock lock(m_connection.loop());
    end();
}

void PulseSoundPlayer::play(const QString& name) {
    const PulseLoop::Lock lock(m_connection.loop());
    end();
    if (m_connection.context() && load(name))
        begin();
}

/// The files are small, and the last one stays in memory.
bool PulseSoundPlayer::load(const QString& name) {
    if (m_sound && m_sound->name == name)
        return true;
    m_sound.reset();
    if (name.contains(u'/'))
        return false;
    try {
        const auto file = m_files.open(m_directory + u'/' + name + QStringLiteral(".wav"));
        m_sound = {name, file->processingFormat(), file->readAll()};
    } catch (const PlatformError&) {
        return false; // no such sound
    }
    return true;
}

void PulseSoundPlayer::begin() {
    const auto spec = specOf(m_sound->format);
    auto* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "event"); // as loud as the user wants such sounds to be
    m_stream = pa_stream_new_with_proplist(m_connection.context(), "Start sound", &spec, nullptr, properties);
    pa_proplist_free(properties);
    if (!m_stream)
        return;
    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* self) { static_cast<PulseSoundPlayer*>(self)->onStateChange(); },
        this);
    constexpr auto serverDecides = static_cast<std::uint32_t>(-1);
    pa_buffer_attr buffer{serverDecides, serverDecides, serverDecides, serverDecides, serverDecides};
    buffer.tlength = static_cast<std::uint32_t>(pa_usec_to_bytes(latency, &spec));
    if (pa_stream_connect_playback(m_stream, nullptr, &buffer, PA_STREAM_ADJUST_LATENCY, nullptr, nullptr) <
        0)
        end();
}

void PulseSoundPlayer::onStateChange() {
    switch (pa_stream_get_state(m_stream)) {
    case PA_STREAM_READY:
        pour();
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        end();
        break;
    default:
        break;
    }
}

/// A sound is short enough for the server to take it whole.
void PulseSoundPlayer::pour() {
    const auto& samples = m_sound->samples;
    if (pa_stream_write(m_stream, samples.data(), samples.size(), nullptr, 0, PA_SEEK_RELATIVE) < 0)
        return end();
    m_drain = pa_stream_drain(
        m_stream, [](pa_stream*, int, void* self) { static_cast<PulseSoundPlayer*>(self)->end(); }, this);
}

void PulseSoundPlayer::end() {
    if (auto* const drain = std::exchange(m_drain, nullptr)) {
        pa_operation_cancel(drain);
        pa_operation_unref(drain);
    }
    if (auto* const stream = std::exchange(m_stream, nullptr)) {
        pa_stream_set_state_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
}

} // namespace talvera
