// The formats that sound is captured in, and what follows from each: how many frames a buffer
// holds, which bands the spectrum is cut into and what they are called.
#pragma once
#include <cstdint>

constexpr int kSoundBufferBytes = 4096; // of every buffer, whatever the format
constexpr int kBands = 16;              // of the spectrum, for each channel
constexpr uint32_t kDefaultFormatCode = 2048;
constexpr int kFormatCount = 12;

#pragma pack(push, 1)
// A PCM wave format record, as the platform and the shared block lay it out.
struct SoundFormatRecord {
    uint16_t tag; // 1: PCM
    uint16_t channels;
    uint32_t rate;           // frames a second
    uint32_t bytesPerSecond; // blockAlign * rate
    uint16_t blockAlign;     // bytes of a frame
    uint16_t bits;           // of a sample: 8 unsigned around 128, or 16 signed
    uint16_t extra;          // 0
};
#pragma pack(pop)
static_assert(sizeof(SoundFormatRecord) == 18);

// The record of a format code, one of the platform's capability bits 1, 2, 4 ... 2048 (44.1 kHz,
// stereo, 16 bit). Any other code gives that of 2048.
SoundFormatRecord FormatOfCode(uint32_t code);
// Codes in the order of the configuration's list, and of their names in the string table.
extern const uint32_t kFormatCodes[kFormatCount];

// Sample frames in a full buffer: 512 at least for what we capture (1024, 2048 or 4096). 0 for a
// record that is empty or that nothing here can read (tag not 1, channels not 1 or 2, bits not 8 or
// 16, rate 0).
int FramesPerBuffer(const SoundFormatRecord& format);

// Upper edges of the bands in Hz. The last one is the top of the spectrum.
void BandEdges(float nyquist, float edges[kBands]);
// The bands' names, at most 7 characters each; for each rate its own set.
const char* const* BandLabels(uint32_t rate);
