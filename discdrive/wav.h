// The header of a WAV file.
#pragma once
#include <cstdint>
#include <span>

constexpr size_t kWavHeadBytes = 64 * 1024; // the sound must begin within these

struct WavData {
    uint64_t offset = 0; // of the first sample, from the file's beginning
    uint64_t bytes = 0;  // of sound
};

// `head`: the file's first bytes, up to kWavHeadBytes; `fileBytes`: the file's length. 1 when it is
// what a disc holds (PCM, 44.1 kHz, 16 bits, two channels) and all its sound lies in the file.
int ReadWavHeader(std::span<const uint8_t> head, uint64_t fileBytes, WavData* data);
