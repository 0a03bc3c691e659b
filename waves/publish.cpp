// Writing the sound's fields of the shared block. See publish.h.
#include "waves/publish.h"

#include "core/shared_block.h"

#include <atomic>
#include <cstring>

static void PublishPower(SharedControlBlock* block, const SoundValues& values) {
    block->PowerLeft = values.powerLeft;
    block->PowerRight = values.powerRight;
    block->PowerFullScale = values.powerFullScale;
    block->HoldCounter = values.holdCounter;
}

static void PublishBands(SharedControlBlock* block, const SoundValues& values) {
    block->BandReference = values.bandReference;
    std::memcpy(block->BandsLeft, values.bandsLeft, sizeof values.bandsLeft);
    std::memcpy(block->BandsRight, values.bandsRight, sizeof values.bandsRight);
}

// Last of all: it says that the rest is there.
static void PublishTick(SharedControlBlock* block, uint32_t tick) {
    void* field = reinterpret_cast<char*>(block) + SHARED_FIELD(SoundTick);
    std::atomic_ref(*static_cast<uint32_t*>(field)).store(tick);
}

void PublishOpening(SharedControlBlock* block, PublishedSound* sound) {
    sound->values = {};
    std::memcpy(block->SoundFormat, &sound->format, sizeof block->SoundFormat);
    std::memset(block->SoundBuffer, sound->format.bits == 8 ? 128 : 0, kSoundBufferBytes);
    PublishPower(block, sound->values);
    PublishBands(block, sound->values);
}

void PublishSound(SharedControlBlock* block, PublishedSound* sound, SoundSums* sums,
                  const uint8_t* bytes, uint32_t tick) {
    std::memcpy(block->SoundFormat, &sound->format, sizeof block->SoundFormat);
    std::memcpy(block->SoundBuffer, bytes, kSoundBufferBytes);
    sound->values.holdLimit = block->HoldLimit;
    const int noClamp = block->NoClamp != 0;
    const int whole =
        ProcessSound(sums, bytes, sound->format, sound->fftChoice, noClamp, &sound->values);
    PublishPower(block, sound->values);
    if (!whole) return;
    PublishBands(block, sound->values);
    PublishTick(block, tick);
}
