// Draws the analyzer's display into pixels: the dark ground once for a layout, then only the
// segments that changed.
#pragma once
#include "waves/analyzer_layout.h"

// 0x00RRGGBB, rows from the top; (0, 0) is the panel's corner.
struct AnalyzerPixels {
    uint32_t* pixels;
    int width, height;
};

struct AnalyzerLook {
    uint32_t segments[kAnalyzerSegments]; // 0x00RRGGBB, as the two below
    uint32_t high;
    uint32_t ground;
    int gradient;
};
// Colours in the settings are 0x00BBGGRR, as is `ground` here.
AnalyzerLook LookOfAnalyzer(const AnalyzerSettings& settings, uint32_t ground);

void DrawAnalyzerGround(const AnalyzerPixels& into, const AnalyzerLayout& layout,
                        const AnalyzerLook& look);
// Everything but the ground when `before` is null, else what differs from it. Gives the bounds of
// what was drawn, in client coordinates; empty when nothing was.
Box DrawAnalyzerFrame(const AnalyzerPixels& into, const AnalyzerLayout& layout,
                      const AnalyzerLook& look, const AnalyzerFrame& frame,
                      const AnalyzerFrame* before);
