// Samples, power and hold. See sound.h.
#include "waves/sound.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <emmintrin.h>

constexpr uint32_t kDecimatedRate = 44000; // from here on every other buffer goes without bands

namespace {
struct Power {
    int64_t left, right;
};
} // namespace

// ---- samples

static void ReadFrames(const uint8_t* bytes, const SoundFormatRecord& format, int count,
                       StereoFrame* frames) {
    const bool mono = format.channels == 1;
    if (format.bits == 8) {
        for (int i = 0; i < count; ++i, bytes += format.channels)
            frames[i] = {static_cast<int16_t>(bytes[0] - 128),
                         static_cast<int16_t>(bytes[mono ? 0 : 1] - 128)};
        return;
    }
    static_assert(sizeof(StereoFrame) == 4); // as 16-bit stereo comes
    if (!mono) {
        std::memcpy(frames, bytes, static_cast<size_t>(count) * sizeof *frames);
        return;
    }
    for (int i = 0; i < count; ++i) {
        std::memcpy(&frames[i].left, bytes + 2 * i, 2);
        frames[i].right = frames[i].left;
    }
}

// ---- power

static __m128i Widened(__m128i four, bool high) { // two sums, left and right, in 64 bits each
    const __m128i zero = _mm_setzero_si128();
    return high ? _mm_unpackhi_epi32(four, zero) : _mm_unpacklo_epi32(four, zero);
}

// The exact sums of squares, eight frames at a time: those of two frames, 2^31 at most, fit 32 bits
// without a sign.
static Power SumSquares(const StereoFrame* frames, int count) {
    __m128i sum = _mm_setzero_si128();
    const auto* four = reinterpret_cast<const __m128i*>(frames);
    for (int i = 0; i < count; i += 8, four += 2) {
        const __m128i a = _mm_loadu_si128(four), b = _mm_loadu_si128(four + 1);
        const __m128i low = _mm_unpacklo_epi16(a, b), high = _mm_unpackhi_epi16(a, b);
        for (const __m128i both : {_mm_madd_epi16(low, low), _mm_madd_epi16(high, high)})
            sum = _mm_add_epi64(sum, _mm_add_epi64(Widened(both, false), Widened(both, true)));
    }
    Power power;
    std::memcpy(&power, &sum, sizeof power);
    return power;
}

// A held value that is no number, as another program may leave there, gives way at once.
static void Raise(float* held, float fresh) {
    if (!(*held >= fresh) || !std::isfinite(*held)) *held = fresh;
}

static void HoldPower(float left, float right, float fullScale, SoundValues* values) {
    if (values->holdCounter < values->holdLimit) {
        ++values->holdCounter;
        Raise(&values->powerLeft, left);
        Raise(&values->powerRight, right);
        Raise(&values->powerFullScale, fullScale);
    } else {
        values->holdCounter = 1;
        values->powerLeft = left;
        values->powerRight = right;
        values->powerFullScale = fullScale;
    }
}

static void UpdatePower(const StereoFrame* frames, int count, int bits, int noClamp,
                        SoundValues* values) {
    const Power power = SumSquares(frames, count);
    const int64_t fullScale = int64_t{count} << (bits == 16 ? 30 : 21);
    const int64_t most = noClamp ? INT64_MAX : fullScale;
    HoldPower(static_cast<float>(std::min(power.left, most)),
              static_cast<float>(std::min(power.right, most)), static_cast<float>(fullScale),
              values);
}

// ---- bands

static void UpdateBands(SoundSums* sums, const SoundFormatRecord& format, int count,
                        uint32_t fftChoice, SoundValues* values) {
    const int points = fftChoice < kFftNone ? count >> fftChoice : count;
    values->bandReference = static_cast<float>(points) * (format.bits == 16 ? 32768 : 128) * 0.5f;
    StereoValue bands[kBands] = {};
    if (fftChoice != kFftNone) {
        float edges[kBands];
        BandEdges(static_cast<float>(format.rate) * 0.5f, edges);
        ComputeBands(&sums->spectrum, sums->frames, points, edges, bands);
    }
    for (int i = 0; i < kBands; ++i) {
        values->bandsLeft[i] = std::min(bands[i].left, values->bandReference);
        values->bandsRight[i] = std::min(bands[i].right, values->bandReference);
    }
}

int ProcessSound(SoundSums* sums, const uint8_t* bytes, const SoundFormatRecord& format,
                 uint32_t fftChoice, int noClamp, SoundValues* values) {
    const int count = FramesPerBuffer(format); // a power of two
    if (!count) return 0;
    ReadFrames(bytes, format, count, sums->frames);
    UpdatePower(sums->frames, count, format.bits, noClamp, values);
    if (format.rate >= kDecimatedRate && ++sums->buffers % 2) return 0;
    UpdateBands(sums, format, count, fftChoice, values);
    return 1;
}
