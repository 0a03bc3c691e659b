// The Waves engine's settings, section "Waves" of the settings root.
#pragma once
#include <cstdint>

constexpr const char* kWavesSection = "Software\\Tonvista\\Waves";

struct WavesSettings {
    uint16_t device; // "InDevice": a wave-input device, or see waves/loopback_win.h
    uint32_t format; // "InFormat": a format code; where it is absent, kDefaultFormatCode
};

constexpr int kFftChoices = 6;

WavesSettings LoadWavesSettings();
void StoreWavesSettings(const WavesSettings& settings);
// "FFTChoice", 0 to kFftChoices - 1; anything else reads as 0.
int LoadFftChoice();
void StoreFftChoice(int choice);
