// What capturing an output decides without the platform: the samples that come are made into the
// chosen format and gathered into buffers, and while nothing comes silence takes their place at
// the format's pace. An output that plays nothing sends nothing, where a microphone sends zeros.
#pragma once
#include "waves/format.h"

#include <cstddef>

constexpr uint32_t kQuietMs = 80;          // without sound for so long, silence begins
constexpr uint32_t kLookAgainMs = 400;     // between two tries to find a lost device
constexpr uint32_t kDefaultEveryMs = 1000; // between two looks whether the default output changed
constexpr int kMostBuffers = 4;            // gathered by one poll; what is older is dropped

struct SoundGather {
    uint32_t rate;
    int channels, bits;
    int used;           // bytes; whole buffers among them wait to be taken
    int paced;          // givenTick counts
    int silent;         // silence has begun
    uint32_t givenTick; // sound or silence was given up to here
    uint32_t owed;      // thousandths of a frame of silence that are still to be given
    uint8_t bytes[(kMostBuffers + 1) * kSoundBufferBytes];
};

// Starts empty. 0 for a format that nobody captures in.
int StartGather(SoundGather* gather, const SoundFormatRecord& format);
// What the platform must deliver for it: the same in 16 bit.
SoundFormatRecord DeliveredFormat(const SoundGather& gather);
// Frames as delivered, at any address; null: as many of silence. The newest are kept.
void GatherSound(SoundGather* gather, const void* frames, uint64_t count);
// After each poll: soundCame when it brought any.
void GatherSilence(SoundGather* gather, uint32_t now, int soundCame);
// The oldest full buffer, taken out; 0 when none is full.
int TakeBuffer(SoundGather* gather, uint8_t buffer[kSoundBufferBytes]);

// 1 when `periodMs` have gone by since *last, which then becomes now. The clock may wrap.
int IsDue(uint32_t now, uint32_t* last, uint32_t periodMs);
