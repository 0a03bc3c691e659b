// The oscilloscope's sums: settings and their limits, gain and slider, the rows that a trace covers
// in each column, and the colour of each row. Numbers only.
#pragma once
#include <cstdint>

#include "waves/format.h"

// Named as their values in the settings, but for the case. Colours are 0x00BBGGRR.
struct ScopeSettings {
    uint32_t lineColor; // frames, legends, centre line
    uint32_t lowColor;  // traces; with gradient, at the centre line
    uint32_t highColor; // with gradient, at the panes' edges
    uint32_t forceMono, vertical, legends, gradient;
    float gain;
};

ScopeSettings DefaultScopeSettings();
void ResetScopeColors(ScopeSettings* settings);
// Whatever was read becomes something that can be drawn. A gain below the slider's least stays.
void ClampScopeSettings(ScopeSettings* settings);

// ---- gain: from 0.5 at the bottom of the slider to 5 at its top
constexpr int kGainSliderMin = 10, kGainSliderMax = 100;
int SliderOfGain(float gain); // may lie beyond the range: the slider cuts it
float GainOfSlider(int position);

// "44Khz 16bit"; empty without a format.
constexpr int kFormatTextSize = 24;
void ScopeFormatText(const SoundFormatRecord& format, char (&text)[kFormatTextSize]);

// ---- traces
enum ScopeChannel { kScopeLeft, kScopeRight, kScopeMean };

// The rows [first, end) of one column; both 0 for none.
struct ScopeColumn {
    int first, end;
};

// The trace of a buffer of kSoundBufferBytes: the columns of an area of width x height that the
// line through all its samples covers, pixel for pixel as GDI draws a polyline (the very last point
// is left out). Samples of 8 bits are read as signed, so theirs are folded. A mono buffer has one
// channel, whichever is asked for. Nothing is covered without a format or below 2 rows.
void TraceColumns(const uint8_t* bytes, const SoundFormatRecord& format, ScopeChannel channel,
                  float gain, int width, int height, ScopeColumn* columns);

inline int CentreRow(int height) {
    return height / 2;
}
// What a lit pixel of each row looks like, 0x00RRGGBB; the centre line is always lit.
void ScopeRowColors(const ScopeSettings& settings, int height, uint32_t* colors);
