// What the spectrum analyzer shows: from the bands that were published to segments that are lit and
// marks that lie above them. Settings and their limits, the colours of the segments. Numbers only.
#pragma once
#include <cstdint>

#include "waves/format.h"

constexpr int kAnalyzerSegments = 10; // of a column, 0 at the bottom; and of each side of the level

// Fields are named as their values in the settings. Colours are 0x00BBGGRR.
struct AnalyzerSettings {
    uint32_t LeftAndRight, Center; // at least one of them is 1
    uint32_t Split, Trails, Gradient;
    float Gainer;         // kAnalyzerGainStep to kAnalyzerGainSteps times that
    uint32_t TrailsCount; // frames, 1 to kAnalyzerMaxHold
    uint32_t Falloff;
    uint32_t LowColor, HighColor;
};
constexpr int kAnalyzerGainSteps = 40; // of the slider
constexpr int kAnalyzerMaxHold = 50;

AnalyzerSettings DefaultAnalyzerSettings(int bitsPerPixel);
// Brings whatever was read within its limits.
void MendAnalyzerSettings(AnalyzerSettings* settings);
int GainPosition(float gain); // of the slider, 1 to kAnalyzerGainSteps
float GainAtPosition(int position);

// The commands that switch a setting; they are the buttons' ids, too.
enum AnalyzerToggle {
    kAnalyzerSides = 702, // left and right
    kAnalyzerCenter = 703,
    kAnalyzerSplit = 704,
    kAnalyzerCombined = 705,
    kAnalyzerTrails = 706,
    kAnalyzerGradient = 707
};
// 1 when it is such a command; it may have been refused.
int SwitchAnalyzer(AnalyzerSettings* settings, int command);
// Whether the button of that command is lit.
int AnalyzerSwitchIsOn(const AnalyzerSettings& settings, int command);

// Colours of the segments from the bottom, 0x00BBGGRR. The two highest are the same.
void AnalyzerRamp(uint32_t low, uint32_t high, uint32_t ramp[kAnalyzerSegments]);

// ---- sums of one frame

// What a band is measured by: full-scale power shared out to the bins, times the gain (so a larger
// gain means lower columns). 0 when there is nothing to measure by.
float LevelReference(float gain, uint32_t bins, float fullScalePower);
// The height of a column in the bands' units.
float DisplayScale(uint32_t bins, float reference);

struct Trail {
    float value;
    uint32_t frames; // since it was last raised or fell
};
void StepTrail(Trail* trail, float value, float scale, uint32_t hold, int falloff);

// Segments as bits, bit 0 the lowest.
struct ColumnSegments {
    uint16_t lit, marked;
};
// `trail` null: no mark.
ColumnSegments SegmentsOf(double value, float scale, const Trail* trail);

// ---- frames

enum AnalyzerChannel { kAnalyzerLeft, kAnalyzerRight, kAnalyzerMiddle, kAnalyzerChannels };

// What was published: finite and not negative, as waves/published_win.h gives it.
struct AnalyzerInput {
    float left[kBands], right[kBands];
    float fullScalePower;
    uint32_t bins;
};

struct AnalyzerState {
    Trail trails[kAnalyzerChannels][kBands];
    Trail peaks[2]; // of the level bar, in fractions of full scale
};

// What is to be seen, in whole segments and pixels: two equal frames look the same.
struct AnalyzerFrame {
    ColumnSegments columns[kAnalyzerChannels][kBands];
    ColumnSegments level[2];              // with Gradient
    int16_t levelLength[2], levelPeak[2]; // without: pixels from the middle; no peak is 0
};

// The next frame. levelRoom: pixels of each side of the level bar.
AnalyzerFrame NextAnalyzerFrame(AnalyzerState* state, const AnalyzerSettings& settings,
                                const AnalyzerInput& input, int levelRoom);
