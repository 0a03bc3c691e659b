// Pages on a device context: the same drawing for screen, printer and metafile. Letters are put
// where they were computed, and clipped to their box.
#pragma once
#include "archive/print_layout.h"
#include "core/platform.h"

constexpr const char* kPrintFace = "Arial"; // until another one is chosen

// Measures the face's letters, or those of the font that the system gives in its place. Takes some
// ten milliseconds.
void LoadPrintFont(const char* face, PrintFont* font);

// From paper to pixels.
struct DeviceScale {
    double x, y;   // pixels for each hundredth of a millimetre
    int left, top; // pixels of the paper's upper left corner, negative on most printers
};
// The paper in a printer, as its context tells. What has no paper (a screen, a metafile) counts as
// a sheet of its own size without margins.
void ReadDevicePaper(HDC dc, PrintPaper* paper, DeviceScale* scale);

void DrawPrintPage(HDC dc, const PrintPage& page, const PrintFont& font, const char* face,
                   const DeviceScale& scale);
