// The volume meter's picture: power in, 16 by 16 pixels out. Also its settings and their limits.
#pragma once
#include <cstdint>

constexpr int kMeterSize = 16;                                   // pixels, both ways
constexpr uint32_t kMeterMinGain = 1, kMeterMaxGain = 200;       // percent
constexpr uint32_t kMeterMinRefresh = 1, kMeterMaxRefresh = 100; // tens of milliseconds

struct MeterSettings {
    uint32_t Gainer = 40; // percent
    uint32_t Refresh = 3; // tens of milliseconds
    uint32_t LeftRight = 1;
    uint32_t Center = 0;
    uint32_t FgColor = 0x00FF00; // 0x00BBGGRR
    uint32_t BkColor = 0x000000;
};
// Whatever was stored, brought into its limits.
MeterSettings SaneMeterSettings(MeterSettings settings);

struct MeterLevels {
    float left, right, center; // 0 to 1
};
// Sound of 8 bits passes the number of spectrum positions, of 16 bits 0: quieter recordings of 8
// bits are lifted by it. Anything may come in, NaN and infinities too.
MeterLevels LevelsOf(float powerLeft, float powerRight, float fullScale, uint32_t gainPercent,
                     uint32_t bins8Bit);

struct MeterPicture {
    uint32_t pixels[kMeterSize * kMeterSize]; // 0xFFRRGGBB, rows from the top
};
void DrawMeter(const MeterSettings& settings, const MeterLevels& levels, MeterPicture* picture);
int SamePicture(const MeterPicture& a, const MeterPicture& b);
