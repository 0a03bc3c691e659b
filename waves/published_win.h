// What the Waves engine, or whoever plays a media file, has published in the shared block: copies
// for the windows that show it. From any thread, without a lock: values of one buffer may stand
// beside some of the next. Without a block everything is silent and empty.
#pragma once
#include "core/shared_block.h"
#include "waves/format.h"

// The format of the published buffer; 0 and an empty record when there is none that we can read.
int PublishedFormat(SoundFormatRecord* format);
// Half the frames of a published buffer, the number of spectrum positions: 2 without a block, 0
// without a format.
uint32_t PublishedBinCount();
void PublishedBands(float left[kBands], float right[kBands]);
// Held over some buffers; fullScale is what a wave of full amplitude would give.
void PublishedPower(float* left, float* right, float* fullScale);
void PublishedSamples(uint8_t bytes[kSoundBufferBytes]);
// 1 while the visuals host shows the sound in the windows' place: they then draw nothing.
int VisualsHaveTaken();
