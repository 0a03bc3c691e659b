// Geometry of the console: a panel with a display strip on top (name and engine lamps), below it
// the component buttons and the two system buttons in a common grid, and the volume bar along the
// right edge. Everything is computed from the client size and the number of controls.
#pragma once
#include "ui/components.h"
#include "ui/geometry.h"

constexpr int kConsoleMargin = 7; // between the client's edge and the outermost groups
// The font is sized by a button of this width at least and at most: readable labels in a small
// window, calm ones in a wide one.
constexpr int kMinReference = 120, kMaxReference = 160;

struct ConsoleLayout {
    Box strip; // display strip, with the next three inside
    Box brand;
    Box lampDots[kMaxComponents]; // round lamps, painted by the console
    Box lamps[kMaxComponents];    // their labels
    Box group;                    // around the component buttons
    Box buttons[kMaxComponents];
    Box systemGroup; // around the two system buttons
    Box minimize, close;
    Box volume;
    Box reference; // what the font's size is taken from; only its size counts
};

// `buttons` and `lamps` up to kMaxComponents each. Any size is allowed: no boxes overlap (but a
// group and its members), and all lie inside the client; too little room makes them empty. The
// strip gets room for texts of height stripText, up to two fifths of the whole.
ConsoleLayout LayOutConsole(int width, int height, int buttons, int lamps, int stripText);
// Moves the name to the strip's left end and the lamps to its right one, each beside its label,
// once the texts' widths in pixels are known.
void TightenStrip(ConsoleLayout* layout, int brandWidth, const int* labelWidths, int lamps);

// One label of the console: the long text where it fits, else the short one.
struct ConsoleLabel {
    const char* longText;
    const char* shortText;
    int width; // room in pixels
    int height;
    int useShort; // answer
};
// Pixel width of a text in the console's font of that height.
using MeasureText = int (*)(const char* text, int fontHeight, void* context);
// Chooses texts and, where even a short text would be clipped, a smaller font than the one asked
// for, but none below kMinFont. Returns the font's height.
constexpr int kMinFont = 8;
int FitConsoleLabels(ConsoleLabel* labels, int count, int fontHeight, MeasureText measure,
                     void* context);
