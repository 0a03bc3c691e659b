// Tones that the spectrum shows: a sine on a bin of even number, placed in a band, as samples of
// any format. Sines on odd bins leave the bands dark.
#pragma once
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "waves/format.h"

constexpr double kTonePi = 3.141592653589793;

// The bin of even number nearest to the band's centre, for a spectrum of so many points; bins are
// rate / points Hz apart. 0 when the band has none of its own: below 1024 points the lowest bands
// are narrower than that.
inline int EvenBinOfBand(const SoundFormatRecord& format, int points, int band) {
    float edges[kBands];
    BandEdges(static_cast<float>(format.rate) / 2, edges);
    const double low = band ? static_cast<double>(edges[band - 1]) : 0;
    const double high = static_cast<double>(edges[band]), width = double(format.rate) / points;
    const int bin = 2 * static_cast<int>(std::lround((low + high) / 2 / width / 2));
    return bin * width > low && bin * width <= high ? bin : 0;
}

// Appends frames of a sine: `frequency` in Hz, amplitude 1 is full scale, phase in radians.
// `channels`: 1 left, 2 right, 3 both; the others stay silent. Mono formats always sound.
inline void AppendTone(std::vector<uint8_t>& bytes, const SoundFormatRecord& format, int frames,
                       double frequency, double amplitude, int channels = 3, double phase = 0) {
    for (int i = 0; i < frames; ++i) {
        const double at = amplitude * std::sin(2 * kTonePi * frequency * i / format.rate + phase);
        for (int channel = 0; channel < format.channels; ++channel) {
            const bool sounds = format.channels == 1 || channels & (1 << channel);
            const double value = sounds ? at : 0;
            if (format.bits == 8) {
                const long raw = 128 + std::lround(value * 128);
                bytes.push_back(static_cast<uint8_t>(std::clamp(raw, 0L, 255L)));
                continue;
            }
            const long sample = std::clamp(std::lround(value * 32768), -32768L, 32767L);
            bytes.push_back(static_cast<uint8_t>(sample & 0xff));
            bytes.push_back(static_cast<uint8_t>(sample >> 8 & 0xff));
        }
    }
}

// One full buffer of it.
inline std::vector<uint8_t> ToneBuffer(const SoundFormatRecord& format, double frequency,
                                       double amplitude, int channels = 3) {
    std::vector<uint8_t> bytes;
    AppendTone(bytes, format, FramesPerBuffer(format), frequency, amplitude, channels);
    return bytes;
}
