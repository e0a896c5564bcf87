// SPDX-License-Identifier: MIT
#include "linux/audio/SoxrAudioConverter.h"

#include "linux/audio/LoudestChannel.h"
#include "text/wiping.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <soxr.h>

namespace talvera {

namespace {

struct ResamplerDeleter {
    void operator()(soxr_t resampler) const { soxr_delete(resampler); }
};
using Resampler = std::unique_ptr<std::remove_pointer_t<soxr_t>, ResamplerDeleter>;

/// The filter isn't flushed at the end of a recording, so what it holds back is cut off the last word. A
/// filter of the usual steepness on its usual blocks holds 20 to 40 ms; one that leaves itself more room
/// between what it passes (6.4 of 8 kHz untouched) and what it stops (from 8.8 kHz), on the smallest blocks,
/// holds 4.
Resampler makeResampler(double fromRate, double toRate) {
    auto io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_INT16_I);
    io.flags = SOXR_NO_DITHER; // silence stays silence
    auto quality = soxr_quality_spec(SOXR_16_BITQ, 0);
    quality.passband_end = 0.8;
    quality.stopband_begin = 1.1;
    auto runtime = soxr_runtime_spec(1);
    runtime.log2_min_dft_size = 8;
    runtime.log2_large_dft_size = 8;
    soxr_error_t error = nullptr;
    Resampler resampler(soxr_create(fromRate, toRate, 1, &error, &io, &quality, &runtime));
    return error == nullptr ? std::move(resampler) : nullptr;
}

float normalized(float sample) {
    return std::isfinite(sample) ? sample : 0.0F;
}

float normalized(std::int16_t sample) {
    return static_cast<float>(sample) / 32768.0F;
}

std::int16_t toInt16(float sample) {
    return static_cast<std::int16_t>(std::clamp(std::round(sample * 32768.0F), -32768.0F, 32767.0F));
}

class SoxrAudioConverter final : public AudioConverter {
public:
    /// Without a resampler the rate stays.
    SoxrAudioConverter(const AudioFormat& from, Resampler resampler)
        : m_from(from)
        , m_loudest(static_cast<std::size_t>(from.channels))
        , m_resampler(std::move(resampler)) {}

    std::optional<std::vector<std::int16_t>> convert(const AudioBuffer& buffer,
                                                     std::size_t capacity) override {
        if (buffer.format != m_from)
            return std::nullopt;
        if (buffer.floats() != nullptr)
            appendMono(buffer.floats(), buffer.frameLength);
        else
            appendMono(buffer.int16s(), buffer.frameLength);

        return m_resampler ? resampled(capacity) : quantized(capacity);
    }

private:
    std::optional<std::vector<std::int16_t>> resampled(std::size_t capacity) {
        std::vector<std::int16_t> result(capacity);
        std::size_t consumed = 0;
        std::size_t produced = 0;
        constexpr float none = 0; // a null pointer would tell it that the stream has ended
        const auto* error =
            soxr_process(m_resampler.get(), m_waiting.empty() ? &none : m_waiting.data(), m_waiting.size(),
                         &consumed, result.data(), result.size(), &produced);
        forget(error == nullptr ? consumed : m_waiting.size());
        if (error != nullptr)
            return std::nullopt;
        result.resize(produced);
        return result;
    }

    std::vector<std::int16_t> quantized(std::size_t capacity) {
        std::vector<std::int16_t> result(std::min(capacity, m_waiting.size()));
        std::transform(m_waiting.begin(), m_waiting.begin() + static_cast<std::ptrdiff_t>(result.size()),
                       result.begin(), toInt16);
        forget(result.size());
        return result;
    }

    void forget(std::size_t frames) {
        if (frames == m_waiting.size())
            return wipe(m_waiting);
        m_waiting.erase(m_waiting.begin(), m_waiting.begin() + static_cast<std::ptrdiff_t>(frames));
    }

    template <typename Sample>
    void appendMono(const Sample* samples, std::size_t frames) {
        const auto channels = static_cast<std::size_t>(m_from.channels);
        const auto chosen =
            m_loudest.choose(frames, [samples](std::size_t index) { return normalized(samples[index]); });
        m_waiting.reserve(m_waiting.size() + frames);
        for (std::size_t frame = 0; frame < frames; ++frame)
            m_waiting.push_back(normalized(samples[frame * channels + chosen]));
    }

    AudioFormat m_from;
    LoudestChannel m_loudest;
    Resampler m_resampler;
    WipedVector<float> m_waiting; // for room in the output; usually empty between the calls
};

} // namespace

std::unique_ptr<AudioConverter> SoxrAudioConverterFactory::make(const AudioFormat& from,
                                                                const AudioFormat& to) {
    const auto isRate = [](double rate) { return std::isfinite(rate) && rate > 0; };
    if (!isRate(from.sampleRate) || !isRate(to.sampleRate) || from.channels < 1)
        return nullptr;
    if (to.channels != 1 || to.sampleType != SampleType::Int16)
        return nullptr;
    if (from.sampleRate == to.sampleRate)
        return std::make_unique<SoxrAudioConverter>(from, nullptr);
    auto resampler = makeResampler(from.sampleRate, to.sampleRate);
    return resampler ? std::make_unique<SoxrAudioConverter>(from, std::move(resampler)) : nullptr;
}

} // namespace talvera
