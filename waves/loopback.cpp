// Gathering what an output plays. See loopback.h.
#include "waves/loopback.h"

#include <algorithm>
#include <cstring>

constexpr int kDeliveredBits = 16;
constexpr uint32_t kMostRate = 384000;

static int FrameBytes(const SoundGather& gather) {
    return gather.channels * gather.bits / 8;
}

int StartGather(SoundGather* gather, const SoundFormatRecord& format) {
    gather->rate = format.rate;
    gather->channels = format.channels;
    gather->bits = format.bits;
    gather->used = gather->paced = gather->silent = 0;
    gather->givenTick = gather->owed = 0;
    return (format.channels == 1 || format.channels == 2) &&
           (format.bits == 8 || format.bits == 16) && format.rate > 0 && format.rate <= kMostRate;
}

SoundFormatRecord DeliveredFormat(const SoundGather& gather) {
    const auto align = static_cast<uint16_t>(gather.channels * kDeliveredBits / 8);
    return {.tag = 1,
            .channels = static_cast<uint16_t>(gather.channels),
            .rate = gather.rate,
            .bytesPerSecond = align * gather.rate,
            .blockAlign = align,
            .bits = kDeliveredBits,
            .extra = 0};
}

// Rounded, so that a whisper around zero stays at 128 and does not flicker below it.
static uint8_t EightBits(int16_t sample) {
    return static_cast<uint8_t>(std::min((sample + 32768 + 128) >> 8, 255));
}

static void Put(SoundGather* gather, const void* frames, int count) {
    uint8_t* to = gather->bytes + gather->used;
    const int bytes = count * FrameBytes(*gather);
    gather->used += bytes;
    if (!frames) {
        memset(to, gather->bits == 8 ? 128 : 0, static_cast<size_t>(bytes));
        return;
    }
    if (gather->bits == kDeliveredBits) {
        memcpy(to, frames, static_cast<size_t>(bytes));
        return;
    }
    for (int i = 0; i < bytes; ++i) {
        int16_t sample;
        memcpy(&sample, static_cast<const uint8_t*>(frames) + 2 * i, sizeof(sample));
        to[i] = EightBits(sample);
    }
}

void GatherSound(SoundGather* gather, const void* frames, uint64_t count) {
    // Room is for whole buffers, which all frame sizes divide: what has been begun and what is
    // put after it stays in step with the frames.
    constexpr int kRoom = static_cast<int>(sizeof(gather->bytes));
    const int frame = FrameBytes(*gather);
    const auto kept = static_cast<int>(std::min<uint64_t>(count, kRoom / frame));
    const auto skipped = static_cast<size_t>(count - static_cast<uint64_t>(kept));
    const int dropped = std::max(gather->used + kept * frame - kRoom, 0);
    gather->used -= dropped;
    memmove(gather->bytes, gather->bytes + dropped, static_cast<size_t>(gather->used));
    const auto* from = static_cast<const uint8_t*>(frames);
    const size_t delivered = static_cast<size_t>(gather->channels) * kDeliveredBits / 8;
    Put(gather, from ? from + skipped * delivered : nullptr, kept);
}

void GatherSilence(SoundGather* gather, uint32_t now, int soundCame) {
    const uint32_t elapsed = now - gather->givenTick;
    if (!soundCame && gather->paced && !gather->silent && elapsed < kQuietMs) return;
    gather->givenTick = now;
    if (soundCame || !gather->paced) {
        gather->paced = 1;
        gather->silent = 0;
        gather->owed = 0;
        return;
    }
    gather->silent = 1;
    const uint64_t owed = gather->owed + static_cast<uint64_t>(elapsed) * gather->rate;
    gather->owed = static_cast<uint32_t>(owed % 1000);
    GatherSound(gather, nullptr, owed / 1000);
}

int TakeBuffer(SoundGather* gather, uint8_t buffer[kSoundBufferBytes]) {
    if (gather->used < kSoundBufferBytes) return 0;
    memcpy(buffer, gather->bytes, kSoundBufferBytes);
    gather->used -= kSoundBufferBytes;
    memmove(gather->bytes, gather->bytes + kSoundBufferBytes, static_cast<size_t>(gather->used));
    return 1;
}

int IsDue(uint32_t now, uint32_t* last, uint32_t periodMs) {
    if (now - *last < periodMs) return 0;
    *last = now;
    return 1;
}
