// The spectrum of a buffer: what each band sums up, left and right at once. docs/waves-engine.md
// tells how it is defined and why some of it is odd.
#pragma once
#include <cstdint>

#include "waves/format.h"

constexpr int kMaxPoints = 4096; // of a transform; the least is 64

// A sample of each channel, 16 bits wide whatever the format; mono stands in both.
struct StereoFrame {
    int16_t left, right;
};

// A position of the spectrum, or a band.
struct StereoValue {
    float left, right;
};

// The tables of one transform size and the memory it works in: about 170 KB, all zero at first.
// Tables are made when another size or other band edges come; nothing is ever allocated.
struct Spectrum {
    struct Point {
        double reLeft, reRight, imLeft, imRight;
    };
    struct Twiddle {
        double re, im;
    };
    alignas(32) Point work[kMaxPoints / 2];
    Twiddle twiddles[kMaxPoints / 2];
    uint16_t order[kMaxPoints / 8];
    int bandEnds[kBands]; // the first position above each band
    float edges[kBands];  // what they were made for
    int points;
    StereoValue magnitudes[kMaxPoints / 4]; // of the positions of even number
    int withoutAvx; // 1: goes without even where it could be had (for tests)
};

// `points` is a power of two, 64 to kMaxPoints, and so many frames are read. The spectrum has
// points / 2 positions, the bands get their sums.
void ComputeBands(Spectrum* s, const StereoFrame* frames, int points, const float edges[kBands],
                  StereoValue bands[kBands]);

// ---- for the stages

constexpr int kFirstStage = 8; // the twiddles of shorter blocks are exactly 1

// Twiddles of the even bins of blocks of `length`: length / 4 of them.
static inline Spectrum::Twiddle* Twiddles(Spectrum* s, int length) {
    return s->twiddles + (length - kFirstStage) / 4;
}

// All of them, for processors with AVX (spectrum_avx.cpp). The outcome is the same to the bit.
void AllStagesAvx(Spectrum* s, const StereoFrame* frames, StereoValue bands[kBands]);
