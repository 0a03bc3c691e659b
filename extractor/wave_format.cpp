// See wave_format.h.
#include "extractor/wave_format.h"

#include <algorithm>
#include <cstring>

constexpr size_t kShortRecord = 16; // without `extra`

int ReadWaveFormat(const void* record, size_t size, SoundFormatRecord* format) {
    SoundFormatRecord read = {};
    if (!record || size < kShortRecord) return 0;
    std::memcpy(&read, record, kShortRecord);
    if (!FramesPerBuffer(read)) return 0;
    if (read.blockAlign != read.channels * (read.bits / 8)) return 0;
    if (read.rate > UINT32_MAX / read.blockAlign) return 0;
    read.bytesPerSecond = read.rate * read.blockAlign; // times are made of it
    *format = read;
    return 1;
}
