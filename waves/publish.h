// What stands in the shared block of the sound that is heard, and how it comes there. One publisher
// at a time: the Waves engine while it captures, the extractor while a media file plays.
#pragma once
#include "waves/sound.h"

struct SharedControlBlock;

// What a publisher keeps from buffer to buffer. The sums are apart from it because of their size.
struct PublishedSound {
    SoundFormatRecord format;
    uint32_t fftChoice;
    SoundValues values;
};

// The format, for windows that open before the first buffer. All else is still of another format,
// or of before a device was lost: silence.
void PublishOpening(SharedControlBlock* block, PublishedSound* sound);
// A buffer of kSoundBufferBytes, heard at `tick` (milliseconds).
void PublishSound(SharedControlBlock* block, PublishedSound* sound, SoundSums* sums,
                  const uint8_t* bytes, uint32_t tick);
