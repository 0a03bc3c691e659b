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
    struct Pair { // two doubles side by side, for left and right
        double left, right;
    };
    struct Point {
        Pair re, im;
    };
    alignas(16) Point work[kMaxPoints / 2];
    alignas(16) Point twiddles[kMaxPoints / 2];
    alignas(16) StereoValue positions[kMaxPoints / 2];
    uint16_t order[kMaxPoints / 8];
    int bandEnds[kBands]; // the first position above each band
    float edges[kBands];  // what they were made for
    int points;
};

// `points` is a power of two, 64 to kMaxPoints, and so many frames are read. Leaves the points / 2
// positions of the spectrum in s->positions, and their sums in the bands.
void ComputeBands(Spectrum* s, const StereoFrame* frames, int points, const float edges[kBands],
                  StereoValue bands[kBands]);
