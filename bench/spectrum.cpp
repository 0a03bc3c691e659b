// One buffer of sound worked out: 4096 bytes, 16-bit stereo, 44.1 kHz (copy, power, two transforms
// of 1024 points, bands). The Windows build tells microseconds. bench/spectrum.sh builds the same
// file natively beside FFTW and tells the ratio of their times.
//
//   spectrum                the figures, with AVX where there is AVX, and without
//   spectrum COUNT [sse2]   works out COUNT buffers and says nothing (to count instructions)
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "waves/sound.h"

constexpr int kPoints = 1024;
constexpr int kBuffers = 16;  // of different sound, in turn
constexpr int kBurst = 16;    // buffers between two looks at the clock: short beside a time slice
constexpr int kRounds = 4001; // pairs of bursts

namespace {
struct Bench {
    uint8_t sound[kBuffers][kSoundBufferBytes];
    uint8_t published[kSoundBufferBytes];
    SoundSums sums;
    SoundValues values;
    double seen; // something of every result, so that none is left out
};
} // namespace
static Bench s_bench;

// A chord under noise, as loud as music.
static void MakeSound() {
    std::mt19937 random(1);
    for (int b = 0; b < kBuffers; ++b) {
        for (int i = 0; i < kPoints; ++i) {
            const double chord = 6000 * std::sin(0.05 * i + b) + 4000 * std::sin(0.31 * i);
            const auto noise = [&] { return static_cast<double>(random() % 8192) - 4096; };
            const StereoFrame frame = {static_cast<int16_t>(chord + noise()),
                                       static_cast<int16_t>(chord / 2 + noise())};
            std::memcpy(s_bench.sound[b] + 4 * i, &frame, 4);
        }
    }
}

// What the engine does, with the spectrum every time.
[[gnu::noinline]] static void OurBuffer(int b) {
    static const SoundFormatRecord format = FormatOfCode(kDefaultFormatCode);
    std::memcpy(s_bench.published, s_bench.sound[b], kSoundBufferBytes);
    s_bench.sums.buffers = 1; // the next one is even
    ProcessSound(&s_bench.sums, s_bench.published, format, kFftAll, 0, &s_bench.values);
    s_bench.seen += static_cast<double>(s_bench.values.bandsLeft[b]);
}

static double BurstMicroseconds(void (*Buffer)(int)) {
    const auto from = std::chrono::steady_clock::now();
    for (int i = 0; i < kBurst; ++i)
        Buffer(i % kBuffers);
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - from;
    return took.count() / kBurst;
}

static double At(std::vector<double> values, int percent) {
    std::sort(values.begin(), values.end());
    return values[(values.size() - 1) * static_cast<size_t>(percent) / 100];
}

static void Print(const char* name, const std::vector<double>& values, const char* unit) {
    std::printf("%-54s %7.3f  (%.3f to %.3f) %s\n", name, At(values, 50), At(values, 10),
                At(values, 90), unit);
}

#ifdef WITH_FFTW
#include <emmintrin.h>
#include <fftw3.h>

namespace {
struct Theirs {
    double *left[kBuffers], *right[kBuffers]; // samples, already doubles
    fftw_complex *leftBins, *rightBins;
    fftw_plan planLeft[kBuffers], planRight[kBuffers];
    StereoValue bands[kBands];
    int bandEnds[kBands];
};
} // namespace
static Theirs s_theirs;

static void MakePlans() {
    const auto doubles = [] { return fftw_alloc_real(kPoints); };
    s_theirs.leftBins = fftw_alloc_complex(kPoints / 2 + 1);
    s_theirs.rightBins = fftw_alloc_complex(kPoints / 2 + 1);
    for (int b = 0; b < kBuffers; ++b) {
        s_theirs.left[b] = doubles();
        s_theirs.right[b] = doubles();
        const auto plan = [](double* in, fftw_complex* out) {
            return fftw_plan_dft_r2c_1d(kPoints, in, out, FFTW_PATIENT | FFTW_PRESERVE_INPUT);
        };
        s_theirs.planLeft[b] = plan(s_theirs.left[b], s_theirs.leftBins);
        s_theirs.planRight[b] = plan(s_theirs.right[b], s_theirs.rightBins);
        StereoFrame frames[kPoints]; // planning has overwritten the samples
        std::memcpy(frames, s_bench.sound[b], sizeof frames);
        for (int i = 0; i < kPoints; ++i) {
            s_theirs.left[b][i] = frames[i].left;
            s_theirs.right[b][i] = frames[i].right;
        }
    }
    OurBuffer(0);
    std::memcpy(s_theirs.bandEnds, s_bench.sums.spectrum.bandEnds, sizeof s_theirs.bandEnds);
}

// Magnitudes and bands with the same care as ours: both channels in one register.
[[gnu::noinline]] static void TheirBuffer(int b) {
    fftw_execute(s_theirs.planLeft[b]);
    fftw_execute(s_theirs.planRight[b]);
    const double *left = s_theirs.left[b], *right = s_theirs.right[b];
    int i = 0;
    for (int band = 0; band < kBands; ++band) {
        __m128 sum = _mm_setzero_ps();
        for (; i < s_theirs.bandEnds[band]; ++i) {
            __m128d value = _mm_loadh_pd(_mm_load_sd(left + i), right + i);
            if (i % 2 == 0) {
                const __m128d l = _mm_load_pd(s_theirs.leftBins[i]);
                const __m128d r = _mm_load_pd(s_theirs.rightBins[i]);
                const __m128d re = _mm_unpacklo_pd(l, r), im = _mm_unpackhi_pd(l, r);
                value = _mm_sqrt_pd(_mm_add_pd(_mm_mul_pd(re, re), _mm_mul_pd(im, im)));
            }
            sum = _mm_add_ps(sum, _mm_cvtpd_ps(value));
        }
        _mm_storel_pi(reinterpret_cast<__m64*>(s_theirs.bands + band), sum);
    }
    s_bench.seen += static_cast<double>(s_theirs.bands[b].left);
}

// Both must have done the same work.
static bool SameBands() {
    for (int b = 0; b < kBuffers; ++b) {
        OurBuffer(b);
        TheirBuffer(b);
        for (int i = 0; i < kBands; ++i) {
            const float ours[] = {s_bench.values.bandsLeft[i], s_bench.values.bandsRight[i]};
            const float theirs[] = {s_theirs.bands[i].left, s_theirs.bands[i].right};
            for (int c = 0; c < 2; ++c)
                if (std::fabs(ours[c] - theirs[c]) > 1e-4f * s_bench.values.bandReference)
                    return false;
        }
    }
    return true;
}

static int Compare() {
    if (!s_theirs.leftBins) MakePlans();
    if (!SameBands()) {
        std::printf("the two spectra differ\n");
        return 1;
    }
    std::vector<double> ours, theirs, ratios;
    for (int i = 0; i < kRounds; ++i) { // in turn, and each first in turn
        const double first = BurstMicroseconds(i % 2 ? OurBuffer : TheirBuffer);
        const double second = BurstMicroseconds(i % 2 ? TheirBuffer : OurBuffer);
        ours.push_back(i % 2 ? first : second);
        theirs.push_back(i % 2 ? second : first);
        ratios.push_back(ours.back() / theirs.back());
    }
    Print("one buffer, native", ours, "us");
    Print("FFTW: two transforms, magnitudes, bands", theirs, "us");
    Print("ratio (median of 4001 pairs, 10th to 90th percentile)", ratios, "");
    return 0;
}
#else
static int Compare() {
    std::vector<double> ours;
    for (int i = 0; i < kRounds; ++i)
        ours.push_back(BurstMicroseconds(OurBuffer));
    Print("one buffer, the Windows build", ours, "us");
    return 0;
}
#endif

int main(int argc, char** argv) {
    MakeSound();
    if (argc < 2) {
        const int failed = Compare();
        s_bench.sums.spectrum.withoutAvx = 1;
        std::printf("without AVX:\n");
        return Compare() || failed;
    }
    s_bench.sums.spectrum.withoutAvx = argc > 2 && !std::strcmp(argv[2], "sse2");
    for (int i = std::atoi(argv[1]); i > 0; --i)
        OurBuffer(i % kBuffers);
    return 0;
}
