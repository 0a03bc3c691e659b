// The sound on its way to the picture, cut into buffers of kSoundBufferBytes, each with the moment
// at which it has been heard. The graph's streaming thread puts in, the publisher's thread takes
// out, and neither ever waits for the other: who can't put in leaves the picture without.
#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "waves/format.h"

constexpr int64_t kTimeUnitsPerMs = 10000; // a unit of the graph's time is 100 ns
// 9 s at 44.1 kHz, 2 s at 192 kHz: renderers run ahead of what is heard by a second or so.
constexpr uint32_t kBlocks = 384;
// Renderers count what they have handed on. What the device itself holds back is heard later.
constexpr uint32_t kDeviceMs = 30;
constexpr uint32_t kMaxWaitMs = 250; // then the clock is read anew: it may have its own pace

struct SoundBlock {
    int64_t heard; // stream time at which its last byte sounds, by the renderer's account
    uint32_t flushes;
    SoundFormatRecord format;
    uint8_t bytes[kSoundBufferBytes];
};

struct BlockQueue {
    std::atomic<uint32_t> written, taken; // blocks so far; they run around
    std::atomic<uint32_t> flushes;
    // The rest belongs to who puts in.
    SoundFormatRecord format; // empty: what comes can't be shown
    uint32_t filled;          // bytes of the block that is being written
    uint32_t filledFlushes;   // and what it belongs to
    int64_t next;             // stream time after the last byte that came
    SoundBlock blocks[kBlocks];
};

// What a sample says of its time.
struct SampleTime {
    int hasStart, hasEnd;
    int64_t start, end;
    int gap; // it does not continue the one before
};

// ---- who puts in

// Of all samples to come.
void SetBlockFormat(BlockQueue* queue, const SoundFormatRecord& format);
// 1: at least one block is complete.
int PutSample(BlockQueue* queue, const uint8_t* bytes, size_t size, const SampleTime& time);
// The sound is at its end: what there is of a block is filled up with silence.
int PutEnd(BlockQueue* queue);

// ---- any thread

// What was put in before is not shown any more.
void FlushBlocks(BlockQueue* queue);

// ---- who takes out

// Null: there is none. It stays valid until it is taken.
const SoundBlock* NextBlock(BlockQueue* queue);
void TakeBlock(BlockQueue* queue);
// 0: it is to be shown at this stream time; never more than kMaxWaitMs.
uint32_t MsUntilShown(const SoundBlock& block, int64_t streamTime);
