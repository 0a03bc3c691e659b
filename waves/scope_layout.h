// Geometry of the oscilloscope window: where display, gain slider, indicators and buttons stand for
// a client size, and how the display is cut into panes. Numbers only; texts are measured by the
// window.
//
// The display gets what it can. Below it stand indicators and buttons in one row of eight, two rows
// of four or four of two, as the width allows; where the window is too low for that they stand
// beside it, and where there is no room for legible letters they are left out: the context menu has
// them all.
#pragma once
#include "ui/geometry.h"

// The controls' ids are the commands that they send.
enum ScopeControl {
    kScopeMode = 700,   // indicator: stereo or mono
    kScopeFormat = 701, // indicator: rate and bits
    kScopeGain = 702,   // slider
    kScopePower = 703,
    kScopeForceMono = 704,
    kScopeVertical = 706,
    kScopeGradient = 707,
    kScopeLegends = 709,
    kScopeSettings = 800
};
constexpr int kScopeControls = 9;
extern const int kScopeControlIds[kScopeControls];
int ScopeControlIndex(int id); // -1 for others

enum ScopeGroup { kScopeDisplayGroup, kScopeButtonGroup, kScopeGroups };

struct ScopeLayout {
    Box boxes[kScopeControls]; // as in kScopeControlIds; empty: left out
    Box display;               // the panes' black ground
    Box panel;                 // the dark ground of the indicators
    Box groups[kScopeGroups];  // what shares an edge; empty without room for one
};
ScopeLayout LayOutScope(int width, int height);

// ---- letters: cell heights in pixels
struct ScopeTextWidths {
    int width[kScopeControls]; // of the widest text, in thousandths of the cell height
};
constexpr int kScopeMinLetter = 7;
// The largest at which no button's label is clipped, less some air unless `large`; and the same for
// the indicators.
void ScopeFontSizes(const ScopeLayout& layout, const ScopeTextWidths& widths, int large,
                    int* buttons, int* indicators);
// Of legends in a display of this height, cut into panes.
int ScopeLegendHeight(const Box& display, int panes, int vertical);

// ---- panes
struct ScopePane {
    Box frame;   // its outermost pixels are the outline
    Box legend;  // empty without
    int divider; // column of the line after the legend; -1 without
    Box trace;
};
// One pane or two. legendWidth: pixels of the widest text, so that traces one above the other begin
// alike; 0 for no legends.
void LayOutPanes(const Box& display, int panes, int vertical, int legendWidth, ScopePane* out);
