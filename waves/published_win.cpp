// Copies out of the shared block. See published_win.h.
#include "waves/published_win.h"

#include <cmath>
#include <cstring>

// Other programs can write the block: no value may upset who draws with it. Bands may well be
// below 0: samples take part in them.
static float Finite(float value) {
    return std::isfinite(value) ? value : 0;
}
static float FinitePower(float value) {
    return Finite(value) > 0 ? value : 0;
}

int PublishedFormat(SoundFormatRecord* format) {
    *format = {};
    if (!SharedBlock) return 0;
    std::memcpy(format, SharedBlock->SoundFormat, sizeof *format);
    if (FramesPerBuffer(*format)) return 1;
    *format = {};
    return 0;
}

uint32_t PublishedBinCount() {
    if (!SharedBlock) return 2;
    SoundFormatRecord format;
    PublishedFormat(&format);
    return static_cast<uint32_t>(FramesPerBuffer(format) / 2);
}

void PublishedBands(float left[kBands], float right[kBands]) {
    for (int i = 0; i < kBands; ++i) {
        left[i] = SharedBlock ? Finite(SharedBlock->BandsLeft[i]) : 0;
        right[i] = SharedBlock ? Finite(SharedBlock->BandsRight[i]) : 0;
    }
}

void PublishedPower(float* left, float* right, float* fullScale) {
    *left = SharedBlock ? FinitePower(SharedBlock->PowerLeft) : 0;
    *right = SharedBlock ? FinitePower(SharedBlock->PowerRight) : 0;
    *fullScale = SharedBlock ? FinitePower(SharedBlock->PowerFullScale) : 0;
}

void PublishedSamples(uint8_t bytes[kSoundBufferBytes]) {
    if (SharedBlock)
        std::memcpy(bytes, SharedBlock->SoundBuffer, kSoundBufferBytes);
    else
        std::memset(bytes, 0, kSoundBufferBytes);
}

int VisualsHaveTaken() {
    return ReadShared(SHARED_FIELD(VisualsTakeOver)) != 0;
}
