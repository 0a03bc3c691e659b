// Which sound can be shown.
#pragma once
#include <cstddef>

#include "waves/format.h"

// Reads a wave format record as a media type holds it, the short form of 16 bytes included. 0: not
// PCM of 8 or 16 bit in one or two channels, or one whose numbers contradict each other.
int ReadWaveFormat(const void* record, size_t size, SoundFormatRecord* format);
