// Cutting and timing of the sound. See blocks.h.
#include "extractor/blocks.h"

#include <algorithm>
#include <cstring>

constexpr int64_t kTimeUnitsPerSecond = 1000 * kTimeUnitsPerMs;
constexpr int64_t kMaxTime = int64_t{1} << 60; // sums of two of them still fit

static int IsFull(const BlockQueue* queue) {
    return queue->written - queue->taken >= kBlocks;
}

static void Complete(BlockQueue* queue, int64_t heard) {
    SoundBlock& block = queue->blocks[queue->written % kBlocks];
    block.heard = heard;
    block.format = queue->format;
    block.flushes = queue->filledFlushes;
    queue->filled = 0;
    ++queue->written;
}

void SetBlockFormat(BlockQueue* queue, const SoundFormatRecord& format) {
    queue->format = format;
    queue->filled = 0;
}

static int64_t StartOf(const BlockQueue* queue, const SampleTime& time) {
    return time.hasStart ? std::clamp(time.start, -kMaxTime, kMaxTime) : queue->next;
}

// The sample's own end counts, since the graph may run at another rate.
static int64_t LengthOf(const BlockQueue* queue, size_t size, const SampleTime& time) {
    if (time.hasStart && time.hasEnd && time.end > time.start)
        return std::min(time.end, kMaxTime) - StartOf(queue, time);
    return static_cast<int64_t>(static_cast<double>(size) * kTimeUnitsPerSecond /
                                queue->format.bytesPerSecond);
}

int PutSample(BlockQueue* queue, const uint8_t* bytes, size_t size, const SampleTime& time) {
    if (!FramesPerBuffer(queue->format)) return 0;
    const uint32_t before = queue->written, flushes = queue->flushes;
    if (time.gap || queue->filledFlushes != flushes) queue->filled = 0;
    if (queue->filledFlushes != flushes) queue->next = 0; // stream time begins anew
    queue->filledFlushes = flushes;
    size -= size % queue->format.blockAlign; // else what follows would change its channel
    const int64_t start = StartOf(queue, time), length = LengthOf(queue, size, time);
    for (size_t used = 0; used < size;) {
        if (IsFull(queue)) {
            queue->filled = 0;
            break;
        }
        const size_t part = std::min(size - used, size_t{kSoundBufferBytes} - queue->filled);
        SoundBlock& block = queue->blocks[queue->written % kBlocks];
        std::memcpy(block.bytes + queue->filled, bytes + used, part);
        queue->filled += static_cast<uint32_t>(part);
        used += part;
        if (queue->filled < kSoundBufferBytes) break;
        const double fraction = static_cast<double>(used) / static_cast<double>(size);
        Complete(queue, start + static_cast<int64_t>(static_cast<double>(length) * fraction));
    }
    queue->next = std::min(start + length, kMaxTime);
    return queue->written != before;
}

int PutEnd(BlockQueue* queue) {
    if (!queue->filled || queue->filledFlushes != queue->flushes) return 0;
    SoundBlock& block = queue->blocks[queue->written % kBlocks];
    std::memset(block.bytes + queue->filled, queue->format.bits == 8 ? 128 : 0,
                kSoundBufferBytes - queue->filled);
    Complete(queue, queue->next);
    return 1;
}

void FlushBlocks(BlockQueue* queue) {
    ++queue->flushes;
}

const SoundBlock* NextBlock(BlockQueue* queue) {
    while (queue->taken != queue->written) {
        const SoundBlock& block = queue->blocks[queue->taken % kBlocks];
        if (block.flushes == queue->flushes) return &block;
        ++queue->taken;
    }
    return nullptr;
}

void TakeBlock(BlockQueue* queue) {
    ++queue->taken;
}

uint32_t MsUntilShown(const SoundBlock& block, int64_t streamTime) {
    const int64_t due = block.heard + kDeviceMs * kTimeUnitsPerMs;
    if (due <= streamTime) return 0;
    const int64_t left = due - std::max(streamTime, -kMaxTime);
    return static_cast<uint32_t>(
        std::min<int64_t>((left + kTimeUnitsPerMs - 1) / kTimeUnitsPerMs, kMaxWaitMs));
}
