// What is made of each buffer of sound, whoever captures or plays it: power, held for some
// buffers, and the spectrum's bands. Plain sums: the caller copies them to where they are read.
#pragma once
#include <cstdint>

#include "waves/format.h"
#include "waves/spectrum.h"

// How much of a buffer the spectrum is made of, as "FFTChoice" stores it. All else means all.
enum FftChoice : uint32_t {
    kFftAll,
    kFftHalf,
    kFftQuarter,
    kFftEighth,
    kFftSixteenth,
    kFftNone // the bands stay 0
};

// What is published. Power and the counter carry over from buffer to buffer.
struct SoundValues {
    float powerLeft, powerRight, powerFullScale; // the highest of the hold window
    uint32_t holdCounter, holdLimit;             // buffers in the window so far, and at most
    float bandReference;                         // full scale of the bands
    float bandsLeft[kBands], bandsRight[kBands];
};

// One for whoever publishes. Large: a static, not a local. All zero is a fresh one.
struct SoundSums {
    uint32_t buffers; // so far, at 44 kHz
    StereoFrame frames[kSoundBufferBytes];
    Spectrum spectrum;
};

// Works out a buffer of kSoundBufferBytes. Power is fresh after each one. 1: bands and
// bandReference are, too, and the publisher notes the time. 0: they are untouched, because at
// 44 kHz every other buffer goes without (the first one to begin with), or because the format is
// unreadable, which leaves everything untouched.
int ProcessSound(SoundSums* sums, const uint8_t* bytes, const SoundFormatRecord& format,
                 uint32_t fftChoice, int noClamp, SoundValues* values);
